#include "inspectedads.h"

#include <algorithm>

namespace znt::inspector {

InspectedAds::InspectedAds(QObject *parent)
    : QAbstractListModel(parent)
{
}

void InspectedAds::setJournal(ZNTAdJournal *journal)
{
    if (m_journal == journal)
        return;
    if (m_journal)
        m_journal->disconnect(this);
    m_journal = journal;
    clear();
    if (journal) {
        connect(journal, &ZNTAdJournal::rowsInserted, this,
            [this](const QModelIndex &, int first, int last) { read(first, last); });
        connect(journal, &ZNTAdJournal::modelReset, this, &InspectedAds::clear);
        read(0, journal->count() - 1);
    }
    Q_EMIT journalChanged();
}

QQuickItem *InspectedAds::viewOf(const QString &adId) const
{
    const QList<QQuickItem *> views = m_witness->views();
    const auto found = std::find_if(views.begin(), views.end(), [&](const QQuickItem *view) {
        const auto facts = m_witness->factsOf(view);
        return facts && facts->ad.adId == adId;
    });
    return found == views.end() ? nullptr : *found;
}

void InspectedAds::clear()
{
    beginResetModel();
    m_ads.clear();
    endResetModel();
    Q_EMIT countChanged();
}

void InspectedAds::read(int first, int last)
{
    for (int row = first; row <= last; ++row)
        read(m_journal->index(row));
}

void InspectedAds::read(const QModelIndex &event)
{
    const QString adId = event.data(ZNTAdJournal::AdIdRole).toString();
    if (adId.isEmpty())
        return;
    const QString what = event.data(ZNTAdJournal::WhatRole).toString();
    const auto found =
        std::find_if(m_ads.begin(), m_ads.end(), [&adId](const Ad &ad) { return ad.adId == adId; });
    if (found == m_ads.end()) {
        beginInsertRows({}, 0, 0);
        m_ads.prepend({adId, event.data(ZNTAdJournal::FormatRole).toString(), what});
        endInsertRows();
        Q_EMIT countChanged();
        return;
    }
    if (what != u"share")
        found->latest = what;
    const QModelIndex changed = index(int(found - m_ads.begin()));
    Q_EMIT dataChanged(changed, changed);
}

int InspectedAds::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant InspectedAds::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Ad &ad = m_ads.at(index.row());
    QQuickItem *view = viewOf(ad.adId);
    const auto facts = view ? m_witness->factsOf(view) : std::nullopt;
    switch (role) {
    case AdIdRole:
        return ad.adId;
    case FormatRole:
        return ad.format;
    case LatestRole:
        return ad.latest;
    case ViewRole:
        return QVariant::fromValue(view);
    case ShareRole:
        return facts ? std::max(facts->share, 0.0) : 0.0;
    default:
        return {};
    }
}

QHash<int, QByteArray> InspectedAds::roleNames() const
{
    return {{AdIdRole, "adId"}, {FormatRole, "format"}, {LatestRole, "latest"}, {ViewRole, "view"},
        {ShareRole, "share"}};
}

void AdEvents::setAdId(const QString &adId)
{
    if (std::exchange(m_adId, adId) == adId)
        return;
    invalidateFilter();
    Q_EMIT adIdChanged();
}

bool AdEvents::filterAcceptsRow(int row, const QModelIndex &parent) const
{
    const QModelIndex event = sourceModel()->index(row, 0, parent);
    return m_adId.isEmpty() || event.data(ZNTAdJournal::AdIdRole).toString() == m_adId;
}

} // namespace znt::inspector

#include <ZNTAdsInspector/ZNTAdJournal.h>

#include "adwitness.h"

#include <QDateTime>
#include <QJsonDocument>

#include <algorithm>

using namespace znt::inspector;

namespace {

// What of the details tells the most in a line.
QString remarkOn(const QJsonObject &details)
{
    if (details.contains(u"percent")) {
        const QJsonValue percent = details.value(u"percent");
        return percent.isNull() ? QStringLiteral("nothing visible")
                                : QStringLiteral("%1 %").arg(percent.toDouble(), 0, 'f', 0);
    }
    QStringList words;
    for (const QLatin1String name : {QLatin1String("kind"), QLatin1String("url"),
             QLatin1String("link"), QLatin1String("code"), QLatin1String("error")}) {
        const QString word = details.value(name).toVariant().toString();
        if (!word.isEmpty())
            words.append(word);
    }
    if (details.value(u"automatically").toBool())
        words.append(QStringLiteral("by itself"));
    return words.join(u' ');
}

QString textOf(const AdEvent &event)
{
    QStringList words{
        event.ad.format, event.ad.position, event.ad.adId, event.what, remarkOn(event.details)};
    words.removeAll(QString());
    return words.join(QStringLiteral(" · "));
}

} // namespace

class ZNTAdJournal::Private
{
public:
    explicit Private(ZNTAdJournal *journal)
        : q(journal)
    {
    }

    void take(const AdEvent &event);
    void flush();
    void makeRoom(qsizetype coming);

    ZNTAdJournal *const q;
    std::shared_ptr<AdWitness> witness; // while enabled
    QList<AdEvent> events;
    QList<AdEvent> coming; // of this turn of the event loop
    int maximumCount = 10'000;
};

// A burst costs no more memory than the journal does.
void ZNTAdJournal::Private::take(const AdEvent &event)
{
    if (coming.isEmpty())
        QMetaObject::invokeMethod(
            q, [this] { flush(); }, Qt::QueuedConnection);
    coming.append(event);
    if (coming.size() > 2 * qsizetype(maximumCount))
        coming.remove(0, coming.size() - maximumCount);
}

void ZNTAdJournal::Private::flush()
{
    QList<AdEvent> batch = std::exchange(coming, {});
    if (batch.isEmpty()) // cleared meanwhile
        return;
    if (batch.size() > maximumCount)
        batch.remove(0, batch.size() - maximumCount);
    makeRoom(batch.size());
    q->beginInsertRows({}, int(events.size()), int(events.size() + batch.size()) - 1);
    events += batch;
    q->endInsertRows();
    Q_EMIT q->countChanged();
}

void ZNTAdJournal::Private::makeRoom(qsizetype newOnes)
{
    const qsizetype over = events.size() + newOnes - maximumCount;
    if (over <= 0)
        return;
    q->beginRemoveRows({}, 0, int(over) - 1);
    events.remove(0, over);
    q->endRemoveRows();
}

ZNTAdJournal::ZNTAdJournal(QObject *parent)
    : QAbstractListModel(parent)
    , d(std::make_unique<Private>(this))
{
}

ZNTAdJournal::~ZNTAdJournal() = default;

bool ZNTAdJournal::isEnabled() const
{
    return d->witness != nullptr;
}

void ZNTAdJournal::setEnabled(bool enabled)
{
    if (enabled == isEnabled())
        return;
    if (enabled) {
        d->witness = AdWitness::shared();
        connect(d->witness.get(), &AdWitness::happened, this,
            [this](const AdEvent &event) { d->take(event); });
    } else {
        d->witness->disconnect(this);
        d->witness.reset();
    }
    Q_EMIT enabledChanged();
}

int ZNTAdJournal::maximumCount() const
{
    return d->maximumCount;
}

void ZNTAdJournal::setMaximumCount(int count)
{
    count = std::max(count, 1);
    if (std::exchange(d->maximumCount, count) == count)
        return;
    d->makeRoom(0);
    Q_EMIT maximumCountChanged();
    Q_EMIT countChanged();
}

int ZNTAdJournal::count() const
{
    return int(d->events.size());
}

QJsonArray ZNTAdJournal::toJson() const
{
    QJsonArray all;
    for (const AdEvent &event : d->events)
        all.append(QJsonObject{{QStringLiteral("time"), event.time},
            {QStringLiteral("format"), event.ad.format},
            {QStringLiteral("position"), event.ad.position},
            {QStringLiteral("adId"), event.ad.adId}, {QStringLiteral("what"), event.what},
            {QStringLiteral("details"), event.details}});
    return all;
}

QString ZNTAdJournal::json() const
{
    return QString::fromUtf8(QJsonDocument(toJson()).toJson());
}

void ZNTAdJournal::clear()
{
    d->coming.clear();
    beginResetModel();
    d->events.clear();
    endResetModel();
    Q_EMIT countChanged();
}

int ZNTAdJournal::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant ZNTAdJournal::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const AdEvent &event = d->events.at(index.row());
    switch (role) {
    case TimeRole:
        return event.time;
    case FormatRole:
        return event.ad.format;
    case PositionRole:
        return event.ad.position;
    case AdIdRole:
        return event.ad.adId;
    case WhatRole:
        return event.what;
    case DetailsRole:
        return event.details;
    case RemarkRole:
        return remarkOn(event.details);
    case TextRole:
    case Qt::DisplayRole:
        return textOf(event);
    default:
        return {};
    }
}

QHash<int, QByteArray> ZNTAdJournal::roleNames() const
{
    return {{TimeRole, "time"}, {FormatRole, "format"}, {PositionRole, "position"},
        {AdIdRole, "adId"}, {WhatRole, "what"}, {DetailsRole, "details"}, {RemarkRole, "remark"},
        {TextRole, "text"}};
}

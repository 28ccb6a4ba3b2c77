// The ads that a journal has met, and the events of one of them.
#pragma once

#include "adwitness.h"

#include <ZNTAdsInspector/ZNTAdJournal.h>

#include <QSortFilterProxyModel>

namespace znt::inspector {

// A row for each ad, the newest first, with its view while there is one.
class InspectedAds : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(ZNTAdJournal *journal READ journal WRITE setJournal NOTIFY journalChanged)
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role { AdIdRole = Qt::UserRole, FormatRole, LatestRole, ViewRole, ShareRole };

    explicit InspectedAds(QObject *parent = nullptr);

    ZNTAdJournal *journal() const { return m_journal; }
    void setJournal(ZNTAdJournal *journal);
    int count() const { return int(m_ads.size()); }
    // Null when it has none, or none any more.
    Q_INVOKABLE QQuickItem *viewOf(const QString &adId) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void journalChanged();
    void countChanged();

private:
    struct Ad
    {
        QString adId;
        QString format;
        QString latest;
    };

    void read(int first, int last);
    void read(const QModelIndex &event);
    void clear();

    QPointer<ZNTAdJournal> m_journal;
    const std::shared_ptr<AdWitness> m_witness = AdWitness::shared();
    QList<Ad> m_ads;
};

// The journal's events of one ad; all of them while its id is empty.
class AdEvents : public QSortFilterProxyModel
{
    Q_OBJECT
    Q_PROPERTY(QString adId READ adId WRITE setAdId NOTIFY adIdChanged)

public:
    QString adId() const { return m_adId; }
    void setAdId(const QString &adId);

Q_SIGNALS:
    void adIdChanged();

protected:
    bool filterAcceptsRow(int row, const QModelIndex &parent) const override;

private:
    QString m_adId;
};

} // namespace znt::inspector

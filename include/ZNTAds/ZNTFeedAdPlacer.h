#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>
#include <ZNTAds/ZNTFeedAds.h>

#include <QtCore/QAbstractProxyModel>

#include <memory>

/// Puts ads into a host's own list model, one after every so many rows. In QML: FeedAdPlacer.
///
/// It has the roles of the source model, and "isAd" and "adData" (a ZNTFeedAd) besides; of a row
/// that is an ad, those of the source are undefined. Ads stay at their rows while the source
/// changes: rows of the source move past them. An ad that is taken out of the ads' model leaves,
/// and no other takes its place; a load places all anew. Lists only: rows without children. Main
/// thread.
class ZNTADS_EXPORT ZNTFeedAdPlacer : public QAbstractProxyModel
{
    Q_OBJECT
    Q_PROPERTY(ZNTFeedAds *ads READ ads WRITE setAds NOTIFY adsChanged)
    Q_PROPERTY(int interval READ interval WRITE setInterval NOTIFY intervalChanged)
    QML_NAMED_ELEMENT(FeedAdPlacer)

public:
    /// Beside the source's own roles: "isAd" and "adData" in QML.
    enum Role { IsAdRole = 0x5a4e54, AdDataRole };

    explicit ZNTFeedAdPlacer(QObject *parent = nullptr);
    ~ZNTFeedAdPlacer() override;

    /// Where the ads come from; null for none. Held weakly.
    ZNTFeedAds *ads() const;
    void setAds(ZNTFeedAds *ads);
    /// How many rows of the source lie before each ad; 5 until set, less than 1 counts as 1.
    int interval() const;
    void setInterval(int rows);

    /// Whether a row of this model is an ad.
    Q_INVOKABLE bool isAd(int row) const;
    /// The ad of a row of this model; null where the row is none.
    Q_INVOKABLE ZNTFeedAd ad(int row) const;
    /// The source's row at a row of this model; -1 where that is an ad or nothing.
    Q_INVOKABLE int sourceRow(int row) const;
    /// The row of this model at which a row of the source stands; -1 where there is no such row.
    Q_INVOKABLE int rowOf(int sourceRow) const;

    void setSourceModel(QAbstractItemModel *model) override;
    QModelIndex mapToSource(const QModelIndex &index) const override;
    QModelIndex mapFromSource(const QModelIndex &sourceIndex) const override;
    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    QModelIndex sibling(int row, int column, const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    bool hasChildren(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void adsChanged();
    void intervalChanged();

private:
    struct Q_DECL_HIDDEN Private;
    const std::unique_ptr<Private> d;
};

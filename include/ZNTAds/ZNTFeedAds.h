#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>
#include <ZNTAds/ZNTError.h>
#include <ZNTAds/ZNTFeedAd.h>

#include <QtCore/QAbstractListModel>

#include <memory>

/// The feed ads of the latest load as a list model, over a manager of its own. In QML: FeedAds.
///
/// The one role "adData" gives a ZNTFeedAd. A load replaces all rows when it has succeeded; one
/// that failed changes none. Whoever hears of a signal may destroy the model. Main thread.
class ZNTADS_EXPORT ZNTFeedAds : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(QString mediaId READ mediaId WRITE setMediaId NOTIFY mediaIdChanged)
    Q_PROPERTY(int adCount READ adCount WRITE setAdCount NOTIFY adCountChanged)
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    Q_PROPERTY(bool loading READ isLoading NOTIFY loadingChanged)
    Q_PROPERTY(ZNTError error READ error NOTIFY errorChanged)
    QML_NAMED_ELEMENT(FeedAds)

public:
    /// A ZNTFeedAd, "adData" in QML.
    enum Role { AdDataRole = Qt::UserRole };

    explicit ZNTFeedAds(QObject *parent = nullptr);
    ~ZNTFeedAds() override;

    /// The ad position; without one a load fails with -1001.
    QString mediaId() const;
    void setMediaId(const QString &mediaId);
    /// How many ads of an answer are kept at most; 1 until set, a negative number keeps all.
    int adCount() const;
    void setAdCount(int count);
    /// The number of rows.
    int count() const;
    /// Whether an answer is still to come.
    bool isLoading() const;
    /// The latest failure; its domain is empty when there was none since the latest load.
    ZNTError error() const;
    /// The manager that loads and counts the ads.
    ZNTFeedManager *manager() const;

    /// Requests ads. Loads may overlap; each answer replaces the rows of the one before.
    Q_INVOKABLE void load();
    /// The ad of a row; null where there is no such row.
    Q_INVOKABLE ZNTFeedAd get(int row) const;
    /// Takes an ad out of the list, for instance when it was closed.
    /// @return whether it was there
    Q_INVOKABLE bool remove(const ZNTFeedAd &ad);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void mediaIdChanged();
    void adCountChanged();
    void countChanged();
    void loadingChanged();
    void errorChanged();
    /// A load succeeded, and the rows are there.
    void loaded();
    /// A load failed.
    void failed(const ZNTError &error);

private:
    struct Q_DECL_HIDDEN Private;
    const std::unique_ptr<Private> d;
};

#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>
#include <ZNTAds/ZNTFeedAdData.h>

#include <QtQml/qqmlregistration.h>

class ZNTFeedManager;

/// A feed record together with the manager that counts it, as a value that QML reads.
///
/// Copies share the record and whether it was seen. A default one is null: its texts are missing,
/// and ZNTFeedAdItem shows nothing for it. Main thread.
class ZNTADS_EXPORT ZNTFeedAd
{
    Q_GADGET
    Q_PROPERTY(bool valid READ isValid)
    Q_PROPERTY(QString adId READ adId)
    Q_PROPERTY(QString title READ title)
    Q_PROPERTY(QStringList imageUrls READ imageUrls)
    Q_PROPERTY(QString source READ source)
    Q_PROPERTY(QString sourceLogo READ sourceLogo)
    Q_PROPERTY(QString h5url READ h5url)
    Q_PROPERTY(QString deepLinkUrl READ deepLinkUrl)
    Q_PROPERTY(qint64 style READ style)
    QML_VALUE_TYPE(feedAdData)

public:
    ZNTFeedAd() = default;
    /// @p adData may be null, which gives a null value; @p manager is held weakly. Without a
    /// manager the ad is shown and can be clicked and closed, but nobody looks whether it is seen.
    ZNTFeedAd(const ZNTFeedAdDataPtr &adData, ZNTFeedManager *manager);

    /// Whether there is a record.
    bool isValid() const { return d != nullptr; }
    /// The record; null in a null value.
    ZNTFeedAdDataPtr adData() const;
    /// The manager, or null when it was destroyed or there was none.
    ZNTFeedManager *manager() const;

    /// As in the record, see ZNTFeedAdData; null, or empty, in a null value. The style is the
    /// template's number, a ZNTFeedManager::AdStyle.
    QString adId() const { return record().adId(); }
    QString title() const { return record().title(); }
    QStringList imageUrls() const { return record().imageUrls(); }
    QString source() const { return record().source(); }
    QString sourceLogo() const { return record().sourceLogo(); }
    QString h5url() const { return record().h5url(); }
    QString deepLinkUrl() const { return record().deepLinkUrl(); }
    qint64 style() const { return record().style(); }

    /// Whether the record was seen in a ZNTFeedAdItem; it is not watched again.
    bool isSeen() const;

    /// The same record of the same load.
    friend bool operator==(const ZNTFeedAd &a, const ZNTFeedAd &b)
    {
        return a.adData() == b.adData();
    }

private:
    friend class ZNTFeedAdItem;
    const ZNTFeedAdData &record() const; // an empty one where there is none
    struct Shared;
    std::shared_ptr<Shared> d;
};

Q_DECLARE_METATYPE(ZNTFeedAd)

#include <ZNTAds/ZNTFeedManager.h>

#include "ads/clicktarget.h"
#include "ads/negativefeedback.h"
#include "ads/notify.h"
#include "ads/tracking.h"
#include "diagnostics/log.h"
#include "feed/exposurechecks.h"
#include "feed/feedrecords.h"
#include "feed/templates.h"
#include "model/adanswer.h"
#include "ui/qmlpart.h"

#include <ZNTAds/ZNTAdsManager.h>
#include <ZNTAds/ZNTFeedAdView.h>

using namespace znt;

class ZNTFeedManager::Private
{
public:
    explicit Private(ZNTFeedManager *manager)
        : q(manager)
    {
    }

    void loaded(const QJsonObject &response);
    void fireClickTrackers(const ZNTFeedAdData &record) const;

    ZNTFeedManager *const q;
    ZNTDelegateRef<ZNTFeedDelegate> delegate;
    QString mediaId;
    qint64 adCount = 1;
    QList<ZNTFeedAdDataPtr> loadedAdDataArray;
    ZNTFeedAdDataPtr adData;
    QHash<const ZNTFeedAdData *, QPointer<QQuickItem>> registeredViews;
    ExposureChecks checks;
};

ZNTFeedManager::ZNTFeedManager(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>(this))
{
    logInfo("Initialized ZNTFeedManager with default values");
}

ZNTFeedManager::~ZNTFeedManager() = default;

// Loading

void ZNTFeedManager::loadAdData()
{
    const QString mediaId = d->mediaId;
    if (mediaId.isNull()) {
        logError("Cannot load ad data: mediaId is empty");
        callbackWithError(
            {QStringLiteral("ZNTFeedManager"), -1001, QStringLiteral("mediaId不能为空")});
        return;
    }
    logInfo("Starting to request feed ad data with mediaId: %1", mediaId);
    prepareLooks(QStringLiteral("FeedAdView")); // what all templates have in common
    const QPointer<ZNTFeedManager> self(this);
    ZNTAdsManager::sharedInstance()->requestAdWithPositionId(
        mediaId, 0.0,
        [self](const QJsonObject &response) {
            if (self)
                self->d->loaded(response);
        },
        [self](const ZNTError &error) {
            if (!self)
                return;
            logError("Failed to load feed ad data: %1", error.localizedDescription());
            self->callbackWithError(error);
        });
}

void ZNTFeedManager::Private::loaded(const QJsonObject &response)
{
    if (!q->handleAdResponse(response)) {
        logError("Failed to parse feed ad data");
        q->callbackWithError(
            {QStringLiteral("ZNTFeedManager"), -1002, QStringLiteral("广告数据解析失败")});
        return;
    }
    logInfo("Successfully loaded %1 feed ads", loadedAdDataArray.size());
    QMetaObject::invokeMethod(
        q,
        [this] {
            // A copy: the host may load again in the call.
            notify(q, delegate, &ZNTFeedDelegate::feedAdDidLoad, QList(loadedAdDataArray));
        },
        Qt::QueuedConnection);
}

void ZNTFeedManager::callbackWithError(const ZNTError &error)
{
    logError("Feed ad error: %1", error.localizedDescription());
    QMetaObject::invokeMethod(
        this, [this, error] { notify(this, d->delegate, &ZNTFeedDelegate::feedAdDidFail, error); },
        Qt::QueuedConnection);
}

bool ZNTFeedManager::handleAdResponse(const QJsonValue &response)
{
    const auto ads = adsOfAnswer(response);
    if (!ads)
        return false;
    d->loadedAdDataArray = readFeedRecords(*ads, d->adCount);
    if (!d->loadedAdDataArray.isEmpty())
        d->adData = d->loadedAdDataArray.last();
    return true;
}

// Views

qint64 ZNTFeedManager::getAdStyleFromString(const QString &code) const
{
    return feedStyle(code);
}

QQuickItem *ZNTFeedManager::createAdViewWithStyle(qint64 style, const QSizeF &size)
{
    ZNTFeedAdView *view = createTemplate(style);
    if (!view)
        return nullptr;
    view->setSize(size);
    view->setDelegate(this);
    return view;
}

void ZNTFeedManager::registerAdForView(QQuickItem *view, const ZNTFeedAdDataPtr &adData)
{
    if (!view || !adData) {
        logWarning("Cannot register ad: view or ad data is nil");
        return;
    }
    logInfo("Registering ad view");
    d->registeredViews.insert(adData.get(), view);
    d->checks.start(view, adData);
}

void ZNTFeedManager::unregisterAdData(const ZNTFeedAdDataPtr &adData)
{
    if (!adData) {
        logWarning("Cannot unregister ad: ad data is nil");
        return;
    }
    logInfo("Unregistering ad view");
    d->checks.stop(adData);
    d->registeredViews.remove(adData.get());
}

void ZNTFeedManager::deallocAllFeedProperty()
{
    logInfo("Deallocating all feed properties");
    for (const ZNTFeedAdDataPtr &record : std::as_const(d->loadedAdDataArray))
        d->checks.stop(record);
    d->loadedAdDataArray.clear();
    d->registeredViews.clear();
    d->checks.forget();
}

// What the template views tell. One record, the last that was loaded, serves them all.

void ZNTFeedManager::adViewDidClick()
{
    logInfo("Feed ad clicked");
    if (!notify(this, d->delegate, &ZNTFeedDelegate::feedAdDidClick) || !d->adData)
        return;
    d->fireClickTrackers(*d->adData);
    openClickTarget(
        {d->adData->deepLinkUrl(), d->adData->h5url()}, [self = QPointer<ZNTFeedManager>(this)] {
            if (self)
                notify(self, self->d->delegate, &ZNTFeedDelegate::feedAdDidCloseOtherController);
        });
}

void ZNTFeedManager::Private::fireClickTrackers(const ZNTFeedAdData &record) const
{
    fireTracking(record.clickUrl3rd(),
        {.opening = "Starting click reporting",
            .name = "Click report",
            .closing = "All click reports completed"});
    fireTracking(record.dpEventUrls(),
        {.opening = "Starting dpEventUrls reporting",
            .name = "DpEvent report",
            .closing = "All dpEventUrls reports completed"});
}

void ZNTFeedManager::adViewDidClose()
{
    logInfo("Feed ad closed");
    if (d->adData)
        sendNegativeFeedback(d->adData->adId());
    notify(this, d->delegate, &ZNTFeedDelegate::feedAdDidClose);
}

void ZNTFeedManager::adViewDidExposure(QQuickItem *view)
{
    logInfo("Feed ad exposed");
    const QPointer<QQuickItem> exposed(view);
    if (!notify(this, d->delegate, &ZNTFeedDelegate::feedAdDidVisible))
        return;
    if (exposed && d->adData)
        d->checks.start(exposed, d->adData);
}

// Properties

void ZNTFeedManager::setDelegate(const ZNTDelegateRef<ZNTFeedDelegate> &delegate)
{
    d->delegate = delegate;
}

ZNTDelegateRef<ZNTFeedDelegate> ZNTFeedManager::delegate() const
{
    return d->delegate;
}

QString ZNTFeedManager::mediaId() const
{
    return d->mediaId;
}

void ZNTFeedManager::setMediaId(const QString &mediaId)
{
    d->mediaId = mediaId;
}

qint64 ZNTFeedManager::adCount() const
{
    return d->adCount;
}

void ZNTFeedManager::setAdCount(qint64 count)
{
    d->adCount = count;
}

const QList<ZNTFeedAdDataPtr> &ZNTFeedManager::loadedAdDataArray() const
{
    return d->loadedAdDataArray;
}

ZNTFeedAdDataPtr ZNTFeedManager::adData() const
{
    return d->adData;
}

void ZNTFeedManager::setAdData(const ZNTFeedAdDataPtr &adData)
{
    d->adData = adData;
}

const QHash<const ZNTFeedAdData *, QPointer<QQuickItem>> &ZNTFeedManager::registeredViews() const
{
    return d->registeredViews;
}

bool ZNTFeedManager::isCheckingVisibility(const ZNTFeedAdDataPtr &adData) const
{
    return d->checks.isRunning(adData);
}

const QSet<QString> &ZNTFeedManager::reportedAdIds() const
{
    return d->checks.reportedAdIds();
}

#include <ZNTAds/ZNTFeedManager.h>

#include "ads/adflow.h"
#include "ads/negativefeedback.h"
#include "feed/exposurechecks.h"
#include "feed/feedclick.h"
#include "feed/feedrecords.h"
#include "feed/templates.h"
#include "ui/qmlpart.h"

#include <ZNTAds/ZNTFeedAdView.h>

using namespace znt;

namespace {

constexpr AdFormat feedFormat{
    .name = "feed",
    .title = "Feed",
    .domain = "ZNTFeedManager",
    .loaded = "Successfully loaded %1 feed ads",
};

} // namespace

class ZNTFeedManager::Private
{
public:
    explicit Private(ZNTFeedManager *manager)
        : flow(manager, feedFormat, &ZNTFeedDelegate::feedAdDidFail)
    {
    }

    qsizetype take(const QList<ZNTFeedAdDataPtr> &records);

    AdFlow<ZNTFeedManager, ZNTFeedDelegate> flow;
    std::atomic<qint64> adCount = 1;
    QList<ZNTFeedAdDataPtr> loadedAdDataArray;
    ZNTFeedAdDataPtr adData;
    QHash<const ZNTFeedAdData *, QPointer<QQuickItem>> registeredViews;
    ExposureChecks checks;
};

ZNTFeedManager::ZNTFeedManager(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>(this))
{
    connect(&d->checks, &ExposureChecks::seen, this, &ZNTFeedManager::rendered);
    logInfo("Initialized ZNTFeedManager with default values");
}

ZNTFeedManager::~ZNTFeedManager() = default;

// Loading

void ZNTFeedManager::loadAdData()
{
    if (!d->flow.requireMediaId())
        return;
    logInfo("Starting to request feed ad data with mediaId: %1", mediaId());
    prepareQmlPart(QStringLiteral("FeedAdView")); // what all templates have in common
    d->flow.request(
        [count = adCount()](const QJsonObject &answer) { return readFeedRecords(answer, count); },
        [this](const QList<ZNTFeedAdDataPtr> &records) { return d->take(records); },
        [this] {
            // A copy: the host may load again in the call.
            d->flow.notify(
                &ZNTFeedDelegate::feedAdDidLoad, &ZNTFeedManager::loaded, loadedAdDataArray());
        });
}

qsizetype ZNTFeedManager::Private::take(const QList<ZNTFeedAdDataPtr> &records)
{
    discardInPool(std::exchange(loadedAdDataArray, records));
    if (!records.isEmpty())
        adData = records.last();
    return records.size();
}

void ZNTFeedManager::callbackWithError(const ZNTError &error)
{
    d->flow.fail(error);
}

bool ZNTFeedManager::handleAdResponse(const QJsonValue &response)
{
    const auto records = readFeedRecords(response, d->adCount);
    if (records)
        d->take(*records);
    return records.has_value();
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
    if (d->flow.notify(&ZNTFeedDelegate::feedAdDidClick, &ZNTFeedManager::clicked) && d->adData)
        followClick(*d->adData, d->flow.opened(&ZNTFeedDelegate::feedAdDidCloseOtherController));
}

void ZNTFeedManager::adViewDidClose()
{
    logInfo("Feed ad closed");
    if (d->adData)
        sendNegativeFeedback(d->adData->adId());
    d->flow.notify(&ZNTFeedDelegate::feedAdDidClose, &ZNTFeedManager::closed);
}

// The host must not be called in the middle of a view's move into its window, so it is notified
// later; but what it registers or unregisters meanwhile has the last word.
void ZNTFeedManager::viewArrived(QQuickItem *view)
{
    if (d->adData)
        d->checks.start(view, d->adData);
}

void ZNTFeedManager::adViewDidExposure(QQuickItem *view)
{
    logInfo("Feed ad exposed");
    auto *const arrived = qobject_cast<ZNTFeedAdView *>(view);
    const bool isWatched = arrived && arrived->takeArrival();
    const QPointer<QQuickItem> exposed(view);
    if (!d->flow.notify(&ZNTFeedDelegate::feedAdDidVisible, &ZNTFeedManager::appeared))
        return;
    if (exposed && d->adData && !isWatched)
        d->checks.start(exposed, d->adData);
}

// Properties

void ZNTFeedManager::setDelegate(const ZNTDelegateRef<ZNTFeedDelegate> &delegate)
{
    d->flow.delegate = delegate;
}

ZNTDelegateRef<ZNTFeedDelegate> ZNTFeedManager::delegate() const
{
    return d->flow.delegate;
}

QString ZNTFeedManager::mediaId() const
{
    return d->flow.mediaId();
}

void ZNTFeedManager::setMediaId(const QString &mediaId)
{
    if (d->flow.setMediaId(mediaId))
        Q_EMIT mediaIdChanged();
}

qint64 ZNTFeedManager::adCount() const
{
    return d->adCount;
}

void ZNTFeedManager::setAdCount(qint64 count)
{
    if (d->adCount.exchange(count) != count)
        Q_EMIT adCountChanged();
}

QList<ZNTFeedAdDataPtr> ZNTFeedManager::loadedAdDataArray() const
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

QHash<const ZNTFeedAdData *, QPointer<QQuickItem>> ZNTFeedManager::registeredViews() const
{
    return d->registeredViews;
}

bool ZNTFeedManager::isCheckingVisibility(const ZNTFeedAdDataPtr &adData) const
{
    return d->checks.isRunning(adData);
}

QSet<QString> ZNTFeedManager::reportedAdIds() const
{
    return d->checks.reportedAdIds();
}

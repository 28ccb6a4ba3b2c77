#include "adwitness.h"

#include "ui/visibleshare.h"

#include <ZNTAds/ZNTFeedAdItem.h>
#include <ZNTAds/ZNTFeedManager.h>
#include <ZNTAds/ZNTInterstitialAd.h>
#include <ZNTAds/ZNTInterstitialManager.h>
#include <ZNTAds/ZNTSplashAdView.h>
#include <ZNTAds/ZNTSplashManager.h>

#include <QCoreApplication>
#include <QJsonArray>
#include <QThread>

#include <cmath>

namespace znt::inspector {

namespace {

using Step = ZNTAdTrace::Step;

std::weak_ptr<AdWitness> &current()
{
    static std::weak_ptr<AdWitness> witness;
    return witness;
}

// The trackers of more ads than a run is looked at for are not told apart any more.
constexpr qsizetype maximumTrackers = 10'000;
constexpr int lookInterval = 100; // ms

QString adIdOf(const std::optional<QJsonObject> &ad)
{
    if (!ad)
        return {};
    const QString id = ad->value(u"adId").toString();
    return id.isEmpty() ? ad->value(u"ad_id").toString() : id;
}

QString formatOf(const QObject *manager)
{
    if (qobject_cast<const ZNTSplashManager *>(manager))
        return QStringLiteral("splash");
    if (qobject_cast<const ZNTInterstitialManager *>(manager))
        return QStringLiteral("interstitial");
    return QStringLiteral("feed");
}

QJsonObject detailsOf(const ZNTError &error)
{
    return {{QStringLiteral("domain"), error.domain()}, {QStringLiteral("code"), error.code()},
        {QStringLiteral("error"), error.localizedDescription()}};
}

} // namespace

std::shared_ptr<AdWitness> AdWitness::shared()
{
    std::shared_ptr<AdWitness> witness = current().lock();
    if (!witness) {
        witness.reset(new AdWitness);
        current() = witness;
        ZNTAdTrace::setListener(listen);
    }
    return witness;
}

AdWitness::AdWitness()
{
    m_looks.setInterval(lookInterval);
    connect(&m_looks, &QTimer::timeout, this, [this] { lookAtShares(); });
}

AdWitness::~AdWitness()
{
    ZNTAdTrace::setListener(nullptr);
}

// On another thread the source may go any time, and the text has to do.
void AdWitness::listen(Step step, const QObject *source, const QString &text)
{
    const QCoreApplication *application = QCoreApplication::instance();
    if (!application)
        return;
    if (QThread::currentThread() == application->thread()) {
        if (const auto witness = current().lock())
            witness->take(step, const_cast<QObject *>(source), text);
        return;
    }
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [step, text] {
            if (const auto witness = current().lock())
                witness->take(step, nullptr, text);
        },
        Qt::QueuedConnection);
}

void AdWitness::take(Step step, QObject *source, const QString &text)
{
    switch (step) {
    case Step::Requested:
        know(source);
        tell({source ? formatOf(source) : QString(), text, {}}, QStringLiteral("requested"));
        break;
    case Step::Answered:
        tell({formatOf(source), keyOf(source).position, {}}, QStringLiteral("answered"));
        break;
    case Step::Refused:
        tell({source ? formatOf(source) : QString(), keyOf(source).position, {}},
            QStringLiteral("refused"), {{QStringLiteral("error"), text}});
        break;
    case Step::Loaded:
        know(source);
        loaded(source);
        break;
    case Step::Telling:
        know(source);
        break;
    case Step::FeedView:
        knowFeedView(qobject_cast<QQuickItem *>(source), text);
        break;
    case Step::WatchStarted:
    case Step::WatchSeen:
    case Step::WatchStopped:
        if (auto *item = qobject_cast<QQuickItem *>(source))
            watched(item, step);
        break;
    case Step::TrackerFired:
    case Step::TrackerDone:
    case Step::TrackerFailed:
        tracked(step, text);
        break;
    case Step::LinkOpened:
    case Step::LinkRefused:
        tell(m_tapped,
            step == Step::LinkOpened ? QStringLiteral("target opened")
                                     : QStringLiteral("target not opened"),
            {{QStringLiteral("link"), text}});
        break;
    case Step::Feedback:
        tell({{}, {}, text}, QStringLiteral("feedback"));
        break;
    }
}

void AdWitness::tell(const AdKey &ad, const QString &what, const QJsonObject &details)
{
    Q_EMIT happened({QDateTime::currentMSecsSinceEpoch(), ad, what, details});
}

// Managers

void AdWitness::know(QObject *manager)
{
    if (!manager || m_managers.contains(manager))
        return;
    m_managers.insert(manager, {formatOf(manager), {}, {}});
    connect(manager, &QObject::destroyed, this, [this, manager] { m_managers.remove(manager); });
    if (auto *splash = qobject_cast<ZNTSplashManager *>(manager))
        knowSplash(splash);
    else if (auto *interstitial = qobject_cast<ZNTInterstitialManager *>(manager))
        knowInterstitial(interstitial);
    else if (auto *feed = qobject_cast<ZNTFeedManager *>(manager))
        knowFeed(feed);
}

AdKey AdWitness::keyOf(const QObject *manager) const
{
    AdKey key = m_managers.value(manager);
    if (const auto *splash = qobject_cast<const ZNTSplashManager *>(manager))
        key = {key.format, splash->mediaId(), adIdOf(splash->adData())};
    else if (const auto *full = qobject_cast<const ZNTInterstitialManager *>(manager))
        key = {key.format, full->mediaId(), adIdOf(full->adData())};
    else if (const auto *feed = qobject_cast<const ZNTFeedManager *>(manager))
        key = {key.format, feed->mediaId(), feed->adData() ? feed->adData()->adId() : QString()};
    return key;
}

void AdWitness::loaded(QObject *manager)
{
    if (const auto *feed = qobject_cast<const ZNTFeedManager *>(manager)) {
        for (const auto ads = feed->loadedAdDataArray(); const ZNTFeedAdDataPtr &ad : ads) {
            const AdKey key{QStringLiteral("feed"), feed->mediaId(), ad->adId()};
            knowTrackers(key, {ad->viewUrl3rd(), ad->clickUrl3rd(), ad->dpEventUrls()});
            tell(key, QStringLiteral("loaded"));
        }
    } else {
        tell(keyOf(manager), QStringLiteral("loaded"));
    }
}

// What the formats that cover a window have in common. An ad that is closed is forgotten by its
// manager before it says so.
template <class Manager>
void AdWitness::hearFullScreen(Manager *manager)
{
    const auto remember = [this, manager] {
        const AdKey key = keyOf(manager);
        knowTrackers(key, {manager->viewUrl3rd(), manager->clickUrl3rd(), manager->dpEventUrls()});
        if (!key.adId.isEmpty())
            m_managers[manager] = key;
    };
    const auto saying = [this, manager, remember](const QString &what) {
        return [this, manager, remember, what] {
            remember();
            if (what == u"tapped")
                m_tapped = m_managers.value(manager);
            tell(m_managers.value(manager), what);
        };
    };
    connect(manager, &Manager::appeared, this, saying(QStringLiteral("shown")));
    connect(manager, &Manager::clicked, this, saying(QStringLiteral("tapped")));
    connect(manager, &Manager::failed, this, [this, manager](const ZNTError &error) {
        tell(keyOf(manager), QStringLiteral("failed"), detailsOf(error));
    });
}

void AdWitness::knowSplash(ZNTSplashManager *manager)
{
    hearFullScreen(manager);
    connect(manager, &ZNTSplashManager::closed, this,
        [this, manager] { tell(m_managers.value(manager), QStringLiteral("closed")); });
}

void AdWitness::knowInterstitial(ZNTInterstitialManager *manager)
{
    hearFullScreen(manager);
    connect(manager, &ZNTInterstitialManager::closed, this, [this, manager](bool automatically) {
        tell(m_managers.value(manager), QStringLiteral("closed"),
            {{QStringLiteral("automatically"), automatically}});
    });
}

void AdWitness::knowFeed(ZNTFeedManager *manager)
{
    connect(manager, &ZNTFeedManager::failed, this, [this, manager](const ZNTError &error) {
        tell({QStringLiteral("feed"), manager->mediaId(), {}}, QStringLiteral("failed"),
            detailsOf(error));
    });
    // One record, the last that was loaded, serves all template views.
    const auto saying = [this, manager](const QString &what) {
        return [this, manager, what] {
            if (what == u"tapped")
                m_tapped = keyOf(manager);
            tell(keyOf(manager), what);
        };
    };
    connect(manager, &ZNTFeedManager::appeared, this, saying(QStringLiteral("shown")));
    connect(manager, &ZNTFeedManager::clicked, this, saying(QStringLiteral("tapped")));
    connect(manager, &ZNTFeedManager::closed, this, saying(QStringLiteral("closed")));
}

// Of views, clicks and deep links.
void AdWitness::knowTrackers(const AdKey &ad, const std::array<QJsonValue, 3> &lists)
{
    if (m_trackers.size() > maximumTrackers)
        m_trackers.clear();
    const QString kinds[] = {
        QStringLiteral("view"), QStringLiteral("click"), QStringLiteral("deep link")};
    for (std::size_t i = 0; i < lists.size(); ++i) {
        for (const auto urls = lists[i].toArray(); const QJsonValue &url : urls)
            m_trackers.insert(url.toString(), {ad, kinds[i]});
    }
}

void AdWitness::tracked(Step step, const QString &text)
{
    const QString url = text.section(u' ', 0, 0);
    const Tracker tracker = m_trackers.value(url);
    QJsonObject details{{QStringLiteral("kind"), tracker.kind}, {QStringLiteral("url"), url}};
    if (step == Step::TrackerFailed)
        details.insert(QStringLiteral("error"), text.section(u' ', 1));
    const QString what = step == Step::TrackerFired ? QStringLiteral("tracker fired")
        : step == Step::TrackerDone                 ? QStringLiteral("tracker answered")
                                                    : QStringLiteral("tracker failed");
    tell(tracker.ad, what, details);
}

// Views

AdWitness::View &AdWitness::viewOf(QQuickItem *item)
{
    const auto found = m_views.find(item);
    if (found != m_views.end())
        return *found;
    connect(item, &QObject::destroyed, this, [this, item] { m_views.remove(item); });
    View &view = m_views[item];
    view.item = item;
    for (auto it = m_managers.begin(); it != m_managers.end(); ++it) {
        const auto *splash = qobject_cast<const ZNTSplashManager *>(it.key());
        const auto *full = qobject_cast<const ZNTInterstitialManager *>(it.key());
        if ((splash && splash->splashAdView() == item)
            || (full && full->interstitialAd() && full->interstitialAd()->adView() == item))
            view.facts.ad = keyOf(it.key());
    }
    m_looks.start();
    return view;
}

void AdWitness::knowFeedView(QQuickItem *item, const QString &adId)
{
    if (!item)
        return;
    ViewFacts &facts = viewOf(item).facts;
    if (facts.ad.adId != adId)
        facts = {};
    facts.ad.format = QStringLiteral("feed");
    facts.ad.adId = adId;
    auto *element = qobject_cast<ZNTFeedAdItem *>(item);
    if (!element)
        element = qobject_cast<ZNTFeedAdItem *>(item->parentItem());
    if (!element)
        return;
    const auto saying = [this, item](const QString &what) {
        return [this, item, what] {
            const AdKey ad = m_views.value(item).facts.ad;
            if (what == u"tapped")
                m_tapped = ad;
            tell(ad, what);
        };
    };
    element->disconnect(this);
    connect(element, &QObject::destroyed, this, [this, element] { m_views.remove(element); });
    connect(element, &ZNTFeedAdItem::appeared, this, saying(QStringLiteral("shown")));
    connect(element, &ZNTFeedAdItem::clicked, this, saying(QStringLiteral("tapped")));
    connect(element, &ZNTFeedAdItem::closed, this, saying(QStringLiteral("closed")));
}

void AdWitness::watched(QQuickItem *item, Step step)
{
    ViewFacts &facts = viewOf(item).facts;
    const QDateTime now = QDateTime::currentDateTime();
    facts.isWatched = step == Step::WatchStarted;
    if (step == Step::WatchStarted) {
        facts.watchedSince = now;
        facts.unwatchedSince = {};
        const AdKey ad = facts.ad;
        tell(ad, QStringLiteral("watched"));
        return;
    }
    if (facts.unwatchedSince.isValid())
        return;
    facts.unwatchedSince = now;
    if (step == Step::WatchSeen)
        facts.seenAt = now;
    const AdKey ad = facts.ad;
    tell(ad, step == Step::WatchSeen ? QStringLiteral("seen") : QStringLiteral("unwatched"));
}

// By the step of a percent.
void AdWitness::lookAtShares()
{
    if (m_views.isEmpty())
        m_looks.stop();
    QList<std::pair<AdKey, double>> changes;
    for (View &view : m_views) {
        const double share = ZNTVisibility::share(view.item).value_or(-1);
        const bool isNew =
            (share < 0) != (view.facts.share < 0) || std::abs(share - view.facts.share) >= 1;
        if (!isNew)
            continue;
        view.facts.share = share;
        changes.append({view.facts.ad, share});
    }
    for (const auto &[ad, share] : changes)
        tell(ad, QStringLiteral("share"),
            {{QStringLiteral("percent"), share < 0 ? QJsonValue() : QJsonValue(share)}});
}

std::optional<ViewFacts> AdWitness::factsOf(const QQuickItem *view) const
{
    const auto found = m_views.find(view);
    return found == m_views.end() ? std::nullopt : std::optional(found->facts);
}

QList<QQuickItem *> AdWitness::views() const
{
    QList<QQuickItem *> views;
    for (const View &view : m_views) {
        if (view.item)
            views.append(view.item);
    }
    return views;
}

} // namespace znt::inspector

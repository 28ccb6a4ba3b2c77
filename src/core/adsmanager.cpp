#include <ZNTAds/ZNTAdsManager.h>

#include "core/configuration.h"
#include "core/exchangerequest.h"
#include "core/networkstatus.h"
#include "core/requestbody.h"
#include "core/userdefaults.h"
#include "diagnostics/log.h"
#include "net/endpoints.h"
#include "net/sessions.h"
#include "support/devicefacts.h"
#include "support/json.h"
#include "support/mainthread.h"

#include <QDateTime>
#include <QMutex>
#include <QThread>

#include <atomic>

using namespace znt;

namespace {

constexpr auto freqCtrlArgKey = "ZNTAds_FreqCtrlArg";
constexpr auto interactionCtrlArgKey = "ZNTAds_InteractionCtrlArg";

} // namespace

class ZNTAdsManager::Private
{
public:
    Identity currentIdentity() const
    {
        const QMutexLocker lock(&mutex);
        return identity;
    }

    void watchDevice();
    void withDevice(std::function<void()> request);
    ExchangeRequest signedRequest(Endpoint to, const QJsonObject &body) const
    {
        const qint64 now = QDateTime::currentSecsSinceEpoch();
        return {endpoint(to).toString(), QStringLiteral("POST"), body,
            signedHeaders(currentIdentity(), now)};
    }
    void post(
        Endpoint to, const QJsonObject &body, const std::function<void(const Outcome &)> &done)
    {
        sendRequest(signedRequest(to, body), isLogEnabled, done);
    }

    void loadAdConfig();
    void readConfiguration(const QByteArray &body);
    void applyConfiguration(const QJsonObject &configuration);

    // Requests may start on any thread; the lock is for their sake.
    mutable QMutex mutex;
    Identity identity;

    std::atomic<bool> isTestMode{false};
    std::atomic<bool> isLogEnabled{false};
    std::atomic<bool> isWiFi{false};
    std::atomic<double> exposureRatio{70.0};
    std::atomic<bool> watchesNetwork{false};
    QString baseUrl;
    std::optional<ZNTFreqCtrlArg> freqCtrlArg;
    std::optional<ZNTInteractionCtrlArg> interactionCtrlArg;
};

// Screen and network path can be watched only while there is an application.
void ZNTAdsManager::Private::watchDevice()
{
    const QCoreApplication *application = QCoreApplication::instance();
    if (!application)
        return;
    if (application->thread() == QThread::currentThread())
        device::watchScreen();
    if (!watchesNetwork.exchange(true))
        followNetworkPath([this](bool wiFi) { isWiFi = wiFi; });
}

// A request names the size of the screen, so the first one, when it is made on another thread or
// before there is an application, is built on the main thread.
void ZNTAdsManager::Private::withDevice(std::function<void()> request)
{
    watchDevice();
    if (device::isScreenKnown())
        request();
    else
        onMainThread([this, request = std::move(request)] {
            watchDevice();
            request();
        });
}

ZNTAdsManager *ZNTAdsManager::sharedInstance()
{
    // Never destroyed: late callbacks and other threads may still come to it.
    static ZNTAdsManager *const instance = new ZNTAdsManager;
    return instance;
}

ZNTAdsManager::ZNTAdsManager()
    : d(std::make_unique<Private>())
{
    loadFreqCtrlArgFromLocal();
    loadInteractionCtrlArgFromLocal();
    d->watchDevice();
    d->baseUrl = endpoint(Endpoint::AdRequest).toString();
    const QString stored = json::string(userdefaults::read(QStringLiteral("ZNTAds_BaseUrl")));
    if (!stored.isNull())
        d->baseUrl = stored;
}

ZNTAdsManager::~ZNTAdsManager() = default;

void ZNTAdsManager::initializeWithAppId(
    const QString &appId, const QString &mediaId, const QString &secret)
{
    setAppId(appId);
    setMediaId(mediaId);
    setSecret(secret);
    d->watchDevice();
    d->loadAdConfig();
}

void ZNTAdsManager::requestAdWithPositionId(
    const QString &positionId, double bidPrice, AdSuccess success, AdFailure failure)
{
    auto done = [success = std::move(success), failure = std::move(failure)](
                    const Outcome &outcome) {
        if (const auto error = outcome.failure()) {
            if (failure)
                failure(*error);
        } else if (success) {
            success(outcome.dictionary);
        }
    };
    d->withDevice([this, positionId, bidPrice, done = std::move(done)] {
        const QJsonObject body = adRequestBody(d->currentIdentity(), getNetworkType(),
            {.positionId = positionId, .bidPrice = bidPrice, .test = d->isTestMode});
        d->post(Endpoint::AdRequest, body, done);
    });
}

void ZNTAdsManager::sendRequestWithURL(const QString &url, const QString &method,
    const std::optional<QJsonObject> &params, const QMap<QString, QString> &headers,
    Completion completion)
{
    sendRequest({url, method, params, headers}, d->isLogEnabled,
        [completion = std::move(completion)](const Outcome &outcome) {
            if (completion)
                completion(outcome.response, outcome.error);
        });
}

void ZNTAdsManager::sendNegativeFeedbackWithType(
    qint64 type, const QString &bizId, const QJsonValue &ext, FeedbackCompletion completion)
{
    auto done = [completion = std::move(completion)](const Outcome &outcome) {
        const auto error = outcome.failure();
        if (completion)
            completion(!error, error);
    };
    d->withDevice([this, type, bizId, ext, done = std::move(done)] {
        const QJsonObject body = feedbackBody(
            d->currentIdentity(), getNetworkType(), {.type = type, .bizId = bizId, .ext = ext});
        d->post(Endpoint::NegativeFeedback, body, done);
    });
}

// Asked for once, at registration.
void ZNTAdsManager::Private::loadAdConfig()
{
    const QJsonObject body{{QStringLiteral("releaseDateTime"), QLatin1String("")},
        {QStringLiteral("version"), QLatin1String("")}};
    const ExchangeRequest request = signedRequest(Endpoint::Configuration, body);
    if (const auto error = request.error()) {
        if (isLogEnabled)
            logError("Config Request Failed: %1", *error);
        return;
    }
    if (isLogEnabled)
        logInfo(
            "Config Request - Headers: %1, Params: %2", request.headersText(), json::text(body));
    sendHttp(Session::Exchange, request.written(), [this](const HttpAnswer &answer) {
        if (!answer.error)
            inPool([this, body = answer.body] { readConfiguration(body); });
        else if (isLogEnabled)
            logError("Config Request Failed: %1", *answer.error);
    });
}

// In the thread pool.
void ZNTAdsManager::Private::readConfiguration(const QByteArray &body)
{
    json::Parsed parsed = json::parse(body);
    if (!parsed.error && !parsed.value.isObject())
        parsed.error = ZNTError(
            QStringLiteral("ZNTAdsManager"), 500, QStringLiteral("Invalid response format"));
    if (parsed.error) {
        if (isLogEnabled)
            logError("Config Parse Error: %1", *parsed.error);
        return;
    }
    const QJsonObject configuration = parsed.value.toObject();
    if (isLogEnabled)
        logInfo("Config Response: %1", json::text(configuration));
    onMainThread([this, configuration] { applyConfiguration(configuration); });
}

void ZNTAdsManager::Private::applyConfiguration(const QJsonObject &configuration)
{
    if (const auto arg = interactionCtrlArgOf(configuration))
        ZNTAdsManager::sharedInstance()->updateInteractionCtrlArg(arg);
    const QJsonValue version = configuration.value(u"version");
    const QJsonValue releaseDateTime = configuration.value(u"releaseDateTime");
    const bool enableAdLog = json::integer(configuration.value(u"enableAdLog")) == 1;
    userdefaults::store({{QStringLiteral("ZNTAds_ReleaseDateTime"), releaseDateTime},
        {QStringLiteral("ZNTAds_Version"), version},
        {QStringLiteral("ZNTAds_EnableAdLog"), enableAdLog}});
    if (isLogEnabled)
        logInfo("Config Updated - Version: %1, ReleaseDateTime: %2", json::display(version),
            json::display(releaseDateTime));
}

QString ZNTAdsManager::sha256(const QString &text) const
{
    return sha256Hex(text);
}

void ZNTAdsManager::setExposureRatio(double percent)
{
    d->exposureRatio = percent >= 0 ? qMin(percent, 100.0) : 0.0; // not a number: 0
    if (d->isLogEnabled)
        logInfo("Exposure ratio updated to: %1%", fixedPoint(d->exposureRatio, 1));
}

double ZNTAdsManager::currentExposureRatio() const
{
    return d->exposureRatio;
}

void ZNTAdsManager::setTestMode(bool testMode)
{
    setIsTestMode(testMode);
    if (d->isLogEnabled)
        logInfo("Test mode %1", testMode ? QStringLiteral("enabled") : QStringLiteral("disabled"));
}

void ZNTAdsManager::setIsTestMode(bool testMode)
{
    d->isTestMode = testMode;
}

bool ZNTAdsManager::isTestMode() const
{
    return d->isTestMode;
}

void ZNTAdsManager::setLogEnabled(bool enabled)
{
    setIsLogEnabled(enabled);
    ZNTLogManager::sharedInstance()->setLogEnabled(enabled);
    logInfo("Log %1", enabled ? QStringLiteral("enabled") : QStringLiteral("disabled"));
}

void ZNTAdsManager::setIsLogEnabled(bool enabled)
{
    d->isLogEnabled = enabled;
}

bool ZNTAdsManager::isLogEnabled() const
{
    return d->isLogEnabled;
}

QString ZNTAdsManager::appId() const
{
    return d->currentIdentity().appId;
}

void ZNTAdsManager::setAppId(const QString &appId)
{
    const QMutexLocker lock(&d->mutex);
    d->identity.appId = appId;
}

QString ZNTAdsManager::mediaId() const
{
    return d->currentIdentity().mediaId;
}

void ZNTAdsManager::setMediaId(const QString &mediaId)
{
    const QMutexLocker lock(&d->mutex);
    d->identity.mediaId = mediaId;
}

void ZNTAdsManager::setSecret(const QString &secret)
{
    const QMutexLocker lock(&d->mutex);
    d->identity.secret = secret;
}

QString ZNTAdsManager::baseUrl() const
{
    return d->baseUrl;
}

void ZNTAdsManager::setBaseUrl(const QString &baseUrl)
{
    d->baseUrl = baseUrl;
}

QString ZNTAdsManager::getNetworkType() const
{
    return d->isWiFi ? QStringLiteral("wifi") : QStringLiteral("unknown");
}

bool ZNTAdsManager::isWiFi() const
{
    return d->isWiFi;
}

void ZNTAdsManager::setIsWiFi(bool isWiFi)
{
    d->isWiFi = isWiFi;
}

std::optional<ZNTFreqCtrlArg> ZNTAdsManager::freqCtrlArg() const
{
    return d->freqCtrlArg;
}

void ZNTAdsManager::setFreqCtrlArg(const std::optional<ZNTFreqCtrlArg> &arg)
{
    d->freqCtrlArg = arg;
}

std::optional<ZNTInteractionCtrlArg> ZNTAdsManager::interactionCtrlArg() const
{
    return d->interactionCtrlArg;
}

void ZNTAdsManager::setInteractionCtrlArg(const std::optional<ZNTInteractionCtrlArg> &arg)
{
    d->interactionCtrlArg = arg;
}

void ZNTAdsManager::updateInteractionCtrlArg(const std::optional<ZNTInteractionCtrlArg> &arg)
{
    if (!arg)
        return;
    d->interactionCtrlArg = arg;
    const QJsonObject dictionary = arg->toDictionary();
    userdefaults::store({{QString::fromLatin1(interactionCtrlArgKey), dictionary}});
    if (d->isLogEnabled)
        logInfo("Interaction control arguments updated: %1", json::text(dictionary));
}

namespace {

// The record stored under the key, or a plain new one when nothing is.
template <class Record>
std::optional<Record> storedRecord(const char *key)
{
    const QJsonValue stored = userdefaults::read(QString::fromLatin1(key));
    return stored.isUndefined() ? std::optional<Record>(std::in_place)
                                : Record::initWithDictionary(stored);
}

} // namespace

void ZNTAdsManager::loadFreqCtrlArgFromLocal()
{
    d->freqCtrlArg = storedRecord<ZNTFreqCtrlArg>(freqCtrlArgKey);
}

void ZNTAdsManager::loadInteractionCtrlArgFromLocal()
{
    d->interactionCtrlArg = storedRecord<ZNTInteractionCtrlArg>(interactionCtrlArgKey);
}

#pragma once

#include <ZNTAds/ZNTAdsResponse.h>
#include <ZNTAds/ZNTError.h>
#include <ZNTAds/ZNTFreqCtrlArg.h>
#include <ZNTAds/ZNTInteractionCtrlArg.h>

#include <QtCore/QJsonObject>
#include <QtCore/QMap>

#include <functional>
#include <memory>
#include <optional>

/// The service client: builds, signs and sends the requests to the exchange, and keeps what the
/// host and the remote configuration have set.
///
/// One per process. Requests may be started from any thread; everything else is for the main
/// thread, where every callback runs too. What is requested before there is a QCoreApplication
/// waits for it; with its end pending requests are dropped, and their callbacks do not run.
class ZNTADS_EXPORT ZNTAdsManager
{
public:
    /// Receives the answer in dictionary form: "id", "message", "code" and the list "data".
    using AdSuccess = std::function<void(const QJsonObject &response)>;
    /// Receives the transfer's or parser's error unchanged, or one of domain "ZNTAdsManager".
    using AdFailure = std::function<void(const ZNTError &error)>;
    /// Receives the parsed answer or an error, never both.
    using Completion = std::function<void(
        const std::optional<ZNTAdsResponse> &response, const std::optional<ZNTError> &error)>;
    /// Receives whether a feedback was accepted, and the error if it was not.
    using FeedbackCompletion =
        std::function<void(bool success, const std::optional<ZNTError> &error)>;

    /// The service client, made at the first call, from whatever thread. That call reads what is
    /// kept in the application's QSettings, and is the only one that waits for the disk, but for
    /// loadFreqCtrlArgFromLocal() and loadInteractionCtrlArgFromLocal().
    static ZNTAdsManager *sharedInstance();

    /// Stores the ids and the secret and starts the one configuration request. ZNTAdsSDK calls
    /// this.
    void initializeWithAppId(const QString &appId, const QString &mediaId, const QString &secret);

    /// Asks for one ad. Exactly one of the callbacks runs later; a price that is not finite, or ids
    /// with a control character, are a failure at once, on the calling thread.
    /// @param positionId the ad position; null and empty are sent as an empty text
    /// @param bidPrice a price in the exchange's unit
    /// @param success gets an answer whose code is 200; may be empty
    /// @param failure gets the error of anything else; may be empty
    void requestAdWithPositionId(
        const QString &positionId, double bidPrice, AdSuccess success, AdFailure failure);
    /// Sends one request of any kind and reads the answer as the exchange's envelope. The HTTP
    /// status is not looked at, only the body counts; the whole takes at most 15 seconds. A request
    /// that cannot be written down is an error at once, on the calling thread: a number in the body
    /// that is not finite, a control character in a header, a method or a header's name that is no
    /// token of HTTP. Headers and body are sent to the origin of @p url alone: a redirection
    /// elsewhere is followed without the headers, and is an error when it would have to take the
    /// body along.
    /// @param url an http or https address of at most 65,536 characters, anything else ends in an
    /// error; it goes out unchanged as far as QUrl can carry it (README, "On the wire")
    /// @param method the HTTP method, as written
    /// @param params the JSON body, sent only when @p method is exactly "POST"
    /// @param headers sent as they are
    /// @param completion gets the answer or the error; may be empty
    void sendRequestWithURL(const QString &url, const QString &method,
        const std::optional<QJsonObject> &params, const QMap<QString, QString> &headers,
        Completion completion);
    /// Notifies the exchange that the user did not want an ad.
    /// @param type the kind of feedback; the ads use 1
    /// @param bizId the ad's id
    /// @param ext an extra value; undefined leaves it out
    /// @param completion gets the outcome; may be empty
    void sendNegativeFeedbackWithType(
        qint64 type, const QString &bizId, const QJsonValue &ext, FeedbackCompletion completion);
    /// SHA-256 of the text's UTF-8 bytes up to its first NUL, as 64 lower-case hexadecimal digits.
    QString sha256(const QString &text) const;

    /// Sets the visible share in percent from which an ad counts as seen; clamped to 0…100, not a
    /// number becomes 0. 70 until then.
    void setExposureRatio(double percent);
    /// The visible share in percent from which an ad counts as seen.
    double currentExposureRatio() const;
    double exposureRatio() const { return currentExposureRatio(); }

    /// Sets test mode and logs it.
    void setTestMode(bool testMode);
    /// Sets test mode silently.
    void setIsTestMode(bool testMode);
    bool isTestMode() const;
    /// Sets logging here and in the logger, and logs it.
    void setLogEnabled(bool enabled);
    /// Sets logging here only, silently.
    void setIsLogEnabled(bool enabled);
    bool isLogEnabled() const;

    /// The ids given at registration; null before.
    QString appId() const;
    void setAppId(const QString &appId);
    QString mediaId() const;
    void setMediaId(const QString &mediaId);
    /// The signing secret can be set and never read back.
    void setSecret(const QString &secret);
    /// Kept for the host; requests do not read it.
    QString baseUrl() const;
    void setBaseUrl(const QString &baseUrl);

    /// "wifi" when the network path is usable and goes over Wi-Fi, else "unknown".
    QString getNetworkType() const;
    bool isWiFi() const;
    void setIsWiFi(bool isWiFi);

    /// The frequency caps; missing when what was stored could not be read.
    std::optional<ZNTFreqCtrlArg> freqCtrlArg() const;
    void setFreqCtrlArg(const std::optional<ZNTFreqCtrlArg> &arg);
    /// The interaction settings; missing when what was stored could not be read.
    std::optional<ZNTInteractionCtrlArg> interactionCtrlArg() const;
    void setInteractionCtrlArg(const std::optional<ZNTInteractionCtrlArg> &arg);
    /// Replaces the interaction settings and stores them; a missing record does nothing.
    void updateInteractionCtrlArg(const std::optional<ZNTInteractionCtrlArg> &arg);
    /// Read the records back from the user defaults, with their defaults when nothing is stored.
    void loadFreqCtrlArgFromLocal();
    void loadInteractionCtrlArgFromLocal();

private:
    ZNTAdsManager();
    ~ZNTAdsManager();
    Q_DISABLE_COPY_MOVE(ZNTAdsManager)

    class Q_DECL_HIDDEN Private;
    const std::unique_ptr<Private> d;
};

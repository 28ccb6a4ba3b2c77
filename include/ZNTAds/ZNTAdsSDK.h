#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QtCore/QMarginsF>
#include <QtCore/QString>
#include <QtCore/QUrl>

#include <functional>

/// The host's entry to the library: registration and the process-wide settings.
///
/// All methods are static and meant for the main thread; none blocks it. Register once per process,
/// after QCoreApplication was made:
/// @code
/// ZNTAdsSDK::registerWithAppId("my-app", "my-media", "my-secret");
/// @endcode
class ZNTADS_EXPORT ZNTAdsSDK
{
public:
    ZNTAdsSDK() = delete;

    /// The library's version, "1.1.0".
    static QString version();

    /// Registers the host and fetches the remote configuration.
    ///
    /// @p appId and @p mediaId must not be empty; if one is, an error is logged and the host may
    /// try again. @p secret signs the requests; it may be empty and is never logged. A second call
    /// after a registration that succeeded only logs a warning.
    static void registerWithAppId(
        const QString &appId, const QString &mediaId, const QString &secret);
    /// Whether a registration has succeeded.
    static bool isInitialized();

    /// Test mode, on until the host turns it off; requests say so to the exchange.
    static void setTestMode(bool testMode);
    /// The test mode as set here, also before registration.
    static bool isTestMode();
    /// Logging, on from registration until the host turns it off.
    static void setLogEnabled(bool enabled);

    /// Replaces the hosts of the endpoints, for staging or the sandbox exchange. Call it before
    /// registerWithAppId(); after a registration that succeeded it changes nothing.
    /// @param httpsBase base of the three exchange endpoints, of scheme https; empty keeps it
    /// @param httpBase base of the log endpoint, of scheme http; empty keeps it
    /// @return whether both were empty or of the right form; one that was holds in any case
    static bool setEndpoints(const QUrl &httpsBase, const QUrl &httpBase);

    /// Opens a click target and says whether that worked; called on the main thread.
    using UrlOpener = std::function<bool(const QUrl &url)>;
    /// Lets the host open click targets itself, for instance in a browser view of its own. Targets
    /// that are local files or resources never reach it. It is kept until another takes its place;
    /// an empty @p opener brings QDesktopServices::openUrl() back.
    static void setUrlOpener(UrlOpener opener);

    /// How much of each edge of the application's windows is taken by a notch, rounded corners or a
    /// bar, in points. Ads keep their controls out of it. Zero until set, as on a desktop; negative
    /// values count as zero. May be called again at any time, for instance when the device turns.
    static void setSafeAreaInsets(const QMarginsF &insets);

    /// The device's hardware identifier.
    static QString getDeviceModel();
    /// Always "wifi".
    static QString getNetworkStatus();
    /// Uploads an error of the host's own. From any thread; a null text is left out. Never retried.
    static void reportError(const QString &summary, const QString &errorDetails);
};

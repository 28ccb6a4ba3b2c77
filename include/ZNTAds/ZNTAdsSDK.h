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
    /// Lets the host open click targets itself, for instance in a browser view of its own. It is
    /// kept until another takes its place; an empty @p opener takes it away.
    ///
    /// QUrl normalises what it reads (`acme://21` becomes `acme://0.0.0.21`, `app3://goHome` loses
    /// its capital) and cannot carry every link (`my_app://x`), which then counts as not opened;
    /// setLinkOpener() gets each as it came.
    ///
    /// Without an opener, a Linux desktop is asked for the scheme's handler first, and a scheme
    /// that only QDesktopServices::setUrlHandler() knows counts as not opened.
    ///
    /// A click target is untrusted and reaches an opener, or the system, only when it leads to the
    /// web or to another application. That is http and https with a host, and any scheme that no
    /// system or browser keeps for itself (as `file`, `jar`, `javascript`, `smb`, `shell` or `ms-…`
    /// are kept), followed by something that is no path (one slash, unless the scheme has a point)
    /// and holds no link to a file, a script or a share, escaped or not, nor the attachment of a
    /// mail. An `intent:` link is judged by the scheme that it names as well; it may ask for no
    /// action but to view, for no component and type, and for none of Android's own applications
    /// but the browser and the store. Control characters and more than 65,536 characters are
    /// refused.
    static void setUrlOpener(UrlOpener opener);

    /// Opens a click target and calls @p done, at once or later, on the main thread, with whether
    /// that worked. Without that call the ad does not go on: there is neither a fall-back to the
    /// web page nor the delegate's word that the target was opened. Later calls are ignored.
    using LinkOpener =
        std::function<void(const QString &link, const std::function<void(bool opened)> &done)>;
    /// As setUrlOpener(), with the text of the link as the ad has it. Goes before the other.
    static void setLinkOpener(LinkOpener opener);
    /// Opens a link as the library does when the host has set no opener: with
    /// QDesktopServices::openUrl(), and so with the handlers of QDesktopServices::setUrlHandler().
    ///
    /// On a desktop with X11 or Wayland the system is asked first, without waiting, whether an
    /// application handles a scheme other than http and https (`xdg-mime`), since opening always
    /// succeeds there. If none does, the link counts as not opened, and a handler of the host's own
    /// for the scheme is not called either; such a host sets an opener. There a link that QUrl
    /// would change goes to `xdg-open` directly; elsewhere the system gets what QUrl makes of it.
    /// @param link under the same rule as click targets
    /// @param done gets whether the link was opened, on the main thread; must not be empty
    static void openLink(const QString &link, const std::function<void(bool opened)> &done);

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

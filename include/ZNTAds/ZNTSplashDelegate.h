#pragma once

#include <ZNTAds/ZNTError.h>

#include <QtCore/QtPlugin>

/// What a host may hear about a splash ad. Every method is optional and called on the main thread.
class ZNTSplashDelegate
{
public:
    virtual ~ZNTSplashDelegate() = default;

    /// An answer was accepted; the ad can be shown.
    virtual void splashAdDidLoad() { }
    /// Loading or showing failed with @p error.
    virtual void splashAdDidFailed(const ZNTError &error) { Q_UNUSED(error) }
    /// The ad's view was put into the window.
    virtual void splashAdDidVisible() { }
    /// The ad was clicked. The creative views send this to the manager, the manager to the host.
    virtual void handleAdClick() { }
    /// The deep link or web page of a click was handed to the system.
    virtual void splashAdDidCloseOtherController() { }
    /// The ad has closed and its views are gone.
    virtual void splashAdDidShowFinish() { }
    /// The ad counts as seen.
    virtual void splashAdDidRender() { }
};

Q_DECLARE_INTERFACE(ZNTSplashDelegate, "com.zntads.ZNTSplashDelegate/1.0")

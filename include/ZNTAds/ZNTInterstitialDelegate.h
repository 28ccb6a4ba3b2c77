#pragma once

#include <ZNTAds/ZNTError.h>

#include <QtCore/QtPlugin>

/// What a host may hear about an interstitial ad. Every method is optional, is called on the main
/// thread, and may destroy whoever calls it.
class ZNTInterstitialDelegate
{
public:
    virtual ~ZNTInterstitialDelegate() = default;

    /// An answer was accepted; the ad can be shown.
    virtual void interstitialAdDidLoad() { }
    /// Loading or showing failed with @p error.
    virtual void interstitialAdDidFailed(const ZNTError &error) { Q_UNUSED(error) }
    /// The overlay has finished fading in.
    virtual void interstitialAdDidVisible() { }
    /// The ad was clicked; comes before its target is opened. The ad stays on screen.
    virtual void interstitialAdDidClick() { }
    /// The deep link or web page of a click was handed to the system, whether it could be opened or
    /// not.
    virtual void interstitialAdDidCloseOtherController() { }
    /// The ad has closed; @p autoClose is true when the timer closed it, false when the user did.
    /// An ad that the user closes before its auto-close time is reported again at that time, then
    /// with true.
    virtual void interstitialAdDidAutoClose(bool autoClose) { Q_UNUSED(autoClose) }
};

Q_DECLARE_INTERFACE(ZNTInterstitialDelegate, "com.zntads.ZNTInterstitialDelegate/1.0")

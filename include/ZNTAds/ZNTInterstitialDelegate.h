#pragma once

#include <ZNTAds/ZNTError.h>

#include <QtCore/QtPlugin>

/// What a host may hear about an interstitial ad. Every method is optional and called on the main
/// thread.
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
    /// The ad was clicked.
    virtual void interstitialAdDidClick() { }
    /// The deep link or web page of a click was handed to the system.
    virtual void interstitialAdDidCloseOtherController() { }
    /// The ad has closed; @p autoClose is true when the timer closed it, false when a person did.
    virtual void interstitialAdDidAutoClose(bool autoClose) { Q_UNUSED(autoClose) }
};

Q_DECLARE_INTERFACE(ZNTInterstitialDelegate, "com.zntads.ZNTInterstitialDelegate/1.0")

#pragma once

#include <ZNTAds/ZNTFeedAdData.h>

#include <QtCore/QtPlugin>

/// What every feed template view can do: draw a record.
class ZNTNativeAdRenderProtocol
{
public:
    virtual ~ZNTNativeAdRenderProtocol() = default;

    /// Fills the view with @p adData and starts loading its pictures; null does nothing. Main
    /// thread.
    virtual void setupWithAdsData(const ZNTFeedAdDataPtr &adData) { Q_UNUSED(adData) }
};

Q_DECLARE_INTERFACE(ZNTNativeAdRenderProtocol, "com.zntads.ZNTNativeAdRenderProtocol/1.0")

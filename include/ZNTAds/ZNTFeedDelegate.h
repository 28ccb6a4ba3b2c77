#pragma once

#include <ZNTAds/ZNTError.h>
#include <ZNTAds/ZNTFeedAdData.h>

#include <QtCore/QList>
#include <QtCore/QtPlugin>

/// What a host may hear about feed ads. Every method is optional and called on the main thread.
class ZNTFeedDelegate
{
public:
    virtual ~ZNTFeedDelegate() = default;

    /// A load succeeded. @p ads are the manager's records at this moment, none if it asked for
    /// none. Keep them: the next load replaces the manager's.
    virtual void feedAdDidLoad(const QList<ZNTFeedAdDataPtr> &ads) { Q_UNUSED(ads) }
    /// A load failed with @p error.
    virtual void feedAdDidFail(const ZNTError &error) { Q_UNUSED(error) }
    /// A template view entered a window.
    virtual void feedAdDidVisible() { }
    /// A template view was tapped.
    virtual void feedAdDidClick() { }
    /// A template view's close button was tapped.
    virtual void feedAdDidClose() { }
    /// The deep link or web page of a click was handed to the system.
    virtual void feedAdDidCloseOtherController() { }
};

Q_DECLARE_INTERFACE(ZNTFeedDelegate, "com.zntads.ZNTFeedDelegate/1.0")

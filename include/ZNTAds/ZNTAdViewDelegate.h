#pragma once

#include <QtCore/QtPlugin>

class QQuickItem;

/// What a feed template view notifies of: the feed manager implements it. Main thread.
class ZNTAdViewDelegate
{
public:
    virtual ~ZNTAdViewDelegate() = default;

    /// The view was tapped.
    virtual void adViewDidClick() { }
    /// The view's close button was tapped.
    virtual void adViewDidClose() { }
    /// @p view is about to enter a window.
    virtual void adViewDidExposure(QQuickItem *view) { Q_UNUSED(view) }
};

Q_DECLARE_INTERFACE(ZNTAdViewDelegate, "com.zntads.ZNTAdViewDelegate/1.0")

// How much of an item is on screen.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <optional>

class QQuickItem;

namespace znt {

// The share of the item, in percent, that its window shows: nothing when the item, or an ancestor,
// is hidden or has an opacity of exactly 0, when nothing of it is left by clipping ancestors and
// the window, or when it is in no window.
ZNTADS_INTERNAL std::optional<double> visibleShare(const QQuickItem *item);

// The same against the window alone, whatever lies between.
ZNTADS_INTERNAL std::optional<double> shareInWindow(const QQuickItem *item);

} // namespace znt

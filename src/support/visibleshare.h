// How much of an item is on screen.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QPointF>
#include <QRectF>

#include <optional>

class QQuickItem;

namespace znt {

// The share of the item, in percent, that its window shows: nothing when the item, or an ancestor,
// is hidden or has an opacity of exactly 0, when nothing of it is left by clipping ancestors and
// the window, or when it is in no window.
ZNTADS_INTERNAL std::optional<double> visibleShare(const QQuickItem *item);

// The same of several items at one moment, in which nothing moves: what lies above the grandparent
// that they have in common, as the rows of a list do, is looked at once.
class ZNTADS_INTERNAL VisibleShares
{
public:
    std::optional<double> of(const QQuickItem *item);
    // The moment is over.
    void forget() { m_shared = {}; }

    // A run of items from one upwards that do no more than clip and move, but for the last.
    struct Run
    {
        const QQuickItem *first = nullptr;
        const QQuickItem *turned = nullptr; // the last, if it does more than that
        const QQuickItem *next = nullptr;   // above the run; null: the window
        bool isClear = false;               // by its opacity
        std::optional<QRectF> clip;         // in the first item's coordinates
        QPointF offset;                     // to those of the last, if turned, else of the next
    };

private:
    Run m_shared;
};

// The same against the window alone, whatever lies between.
ZNTADS_INTERNAL std::optional<double> shareInWindow(const QQuickItem *item);

} // namespace znt

// How much of an item is on screen.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QtGlobal>

#include <limits>
#include <optional>

class QQuickItem;
class QQuickWindow;

namespace znt {

// The share of the item, in percent, that its window shows: nothing when the item, or an ancestor,
// is hidden or has an opacity of exactly 0, when nothing of it is left by clipping ancestors and
// the window, or when it is in no window.
ZNTADS_INTERNAL std::optional<double> visibleShare(const QQuickItem *item);

// The same of several items at one moment, in which nothing moves: their window, and what lies
// above the grandparent that they have in common, as the rows of a list do, are looked at once.
class ZNTADS_INTERNAL VisibleShares
{
public:
    std::optional<double> of(const QQuickItem *item);
    // The moment is over.
    void forget() { *this = {}; }

    // A rectangle by its edges, endless to begin with: cheaper to cut and to move than a QRectF.
    struct Edges
    {
        double left = -std::numeric_limits<double>::infinity();
        double top = -std::numeric_limits<double>::infinity();
        double right = std::numeric_limits<double>::infinity();
        double bottom = std::numeric_limits<double>::infinity();

        void move(double x, double y)
        {
            left += x;
            right += x;
            top += y;
            bottom += y;
        }
        bool isEmpty() const { return !(left < right && top < bottom); }
        double area() const { return (right - left) * (bottom - top); }
        void cut(const Edges &by, double dx, double dy)
        {
            left = qMax(left, by.left + dx);
            top = qMax(top, by.top + dy);
            right = qMin(right, by.right + dx);
            bottom = qMin(bottom, by.bottom + dy);
        }
    };

    // A run of items from one upwards that do no more than clip and move, but for the last.
    struct ClipRun
    {
        const QQuickItem *first = nullptr;
        const QQuickItem *turned = nullptr; // the last, if it does more than that
        const QQuickItem *next = nullptr;   // above the run; null: the window
        bool isClear = false;               // by its opacity
        Edges clip;                         // in the first item's coordinates
        double x = 0, y = 0;                // on to those of the last, if turned, else of the next
    };

private:
    ClipRun m_shared;
    const QQuickWindow *m_window = nullptr;
    Edges m_frame; // the window's; empty while it is not shown
};

// The same against the window alone, whatever lies between.
ZNTADS_INTERNAL std::optional<double> shareInWindow(const QQuickItem *item);

} // namespace znt

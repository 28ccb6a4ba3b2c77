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
// the window, when it is in a row that an item view keeps beyond its edge and does not draw, or
// when it is in no window that is exposed.
ZNTADS_INTERNAL std::optional<double> visibleShare(const QQuickItem *item);

// The same of several items at one moment, in which nothing moves: their window, and what lies
// above the grandparent that they have in common, as the rows of a list do, are looked at once.
class ZNTADS_INTERNAL VisibleShares
{
public:
    std::optional<double> of(const QQuickItem *item);
    // Also clears what was looked at for all: the caller is about to notify code that may move
    // items.
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
        // What lies within rounding of an edge is not cut, so that the whole stays whole.
        void cut(const Edges &by, double dx, double dy)
        {
            constexpr double rounding = 1e-6;
            if (by.left + dx > left + rounding)
                left = by.left + dx;
            if (by.top + dy > top + rounding)
                top = by.top + dy;
            if (by.right + dx < right - rounding)
                right = by.right + dx;
            if (by.bottom + dy < bottom - rounding)
                bottom = by.bottom + dy;
        }
    };

    // A run of items from one upwards that do no more than clip and move, but for the last.
    struct ClipRun
    {
        const QQuickItem *first = nullptr;
        const QQuickItem *turned = nullptr; // the last, if it does more than that
        const QQuickItem *next = nullptr;   // above the run; null: the window
        bool isUndrawn = false;             // by its opacity, or by an item view
        Edges clip;                         // in the first item's coordinates
        double x = 0, y = 0;                // on to those of the last, if turned, else of the next
    };

private:
    ClipRun m_shared;
    const QQuickWindow *m_window = nullptr;
    Edges m_frame; // the window's; empty while it is not shown
};

} // namespace znt

// For an inspector: how much of an item is on screen, and what takes it away.
class ZNTADS_EXPORT ZNTVisibility
{
public:
    ZNTVisibility() = delete;

    struct Obstacle
    {
        enum Kind {
            None,
            NoWindow,
            NoSize,
            Hidden,         // the item, or an ancestor
            Transparent,    // likewise: its opacity is 0
            Undrawn,        // a row that its view does not draw
            Clip,           // an ancestor, or the item itself
            Scaled,         // the item, or an ancestor, is drawn smaller than it is
            WindowEdge,     // what lies outside of the window
            WindowNotShown, // it is hidden, minimised, transparent or not exposed
        };
        Kind kind = None;
        const QQuickItem *item = nullptr; // where it is one
    };

    // What the checks of what is seen go by.
    static std::optional<double> share(const QQuickItem *item);
    // Of several the one that takes all, or else the most.
    static Obstacle obstacle(const QQuickItem *item);
};

namespace znt {

// The same against the window alone, whatever lies between.
ZNTADS_INTERNAL std::optional<double> shareInWindow(const QQuickItem *item);

} // namespace znt

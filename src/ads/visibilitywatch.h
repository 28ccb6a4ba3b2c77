// Waits until enough of an ad's view is on screen.
#pragma once

#include "ads/visibilitytimer.h"

class QQuickItem;

namespace znt {

// Looks ten times a second at an item, until it is seen or there is no item in a window any more.
// Main thread.
class ZNTADS_INTERNAL VisibilityWatch
{
public:
    enum class End {
        Seen, // its visible share has reached the exposure ratio
        Lost,
    };
    using Item = std::function<QQuickItem *()>;

    // `ended` runs when a watch has ended by itself, and may destroy it.
    explicit VisibilityWatch(std::function<void(End)> ended)
        : m_ended(std::move(ended))
    {
    }

    // Starts over. `item` gives the item at each look.
    void start(Item item);
    void stop();
    bool isRunning() const { return m_timer.isActive(); }

private:
    void look(VisibleShares &shares);
    void end(End how);

    VisibilityTimer m_timer{[this](VisibleShares &shares) { look(shares); }};
    const std::function<void(End)> m_ended;
    Item m_item;
};

} // namespace znt

// Waits until enough of an ad's view is on screen.
#pragma once

#include "ads/visibilitytimer.h"

#include <QObject>

#include <functional>

class QQuickItem;

namespace znt {

// Whether the item's visible share has reached the exposure ratio. If so, whoever hears of it may
// move things, and the moment is over.
bool checkSeen(const QQuickItem *item, VisibleShares &shares);

// Looks ten times a second at an item until it is seen.
class ZNTADS_INTERNAL VisibilityWatch : public QObject
{
    Q_OBJECT

public:
    explicit VisibilityWatch(QObject *parent = nullptr);

    // Starts over. `item` gives the item at each tick; none, or one in no window, ends the watch.
    void start(std::function<QQuickItem *()> item);
    void stop() { m_timer.stop(); }
    bool isRunning() const { return m_timer.isActive(); }

Q_SIGNALS:
    // The item is seen; the watch has stopped already.
    void seen();

private:
    void tick(VisibleShares &shares);

    VisibilityTimer m_timer{[this](VisibleShares &shares) { tick(shares); }};
    std::function<QQuickItem *()> m_item;
};

} // namespace znt

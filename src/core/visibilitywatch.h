// Waits until enough of an ad's view is on screen.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QTimer>

#include <functional>

class QQuickItem;

namespace znt {

// Looks ten times a second at an item until it is seen.
class ZNTADS_INTERNAL VisibilityWatch : public QObject
{
    Q_OBJECT

public:
    explicit VisibilityWatch(QObject *parent = nullptr);

    // Starts over. `item` gives the item at each tick; none, or one in no window, ends the watch.
    void start(std::function<QQuickItem *()> item);
    void stop();
    bool isRunning() const { return m_timer.isActive(); }

Q_SIGNALS:
    // The visible share has reached the exposure ratio; the watch has stopped already.
    void seen();

private:
    void tick();

    QTimer m_timer;
    std::function<QQuickItem *()> m_item;
};

} // namespace znt

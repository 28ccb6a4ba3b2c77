// How an ad lies over a window or a screen of the host.
#pragma once

#include "ui/focusloan.h"

#include <QMarginsF>
#include <QObject>

class QQuickWindow;

namespace znt {

// Puts the item over everything else in `under`, at its size, and keeps it so. A view of the
// host's, if there is one, takes a strip of its own height along the bottom. Both follow the size
// of `under`.
ZNTADS_INTERNAL void layOver(QQuickItem *item, QQuickItem *under, QQuickItem *bottomView = nullptr);

// What an item does that covers the host's own in a window: while it is active it has the keyboard
// focus, no key and no shortcut reaches the host, and Escape or Android's Back asks to close it. It
// knows how far the safe-area insets reach into it. The item is a focus scope, may change its
// window, and may be destroyed with it. Main thread.
class ZNTADS_INTERNAL Covering : public QObject
{
    Q_OBJECT

public:
    explicit Covering(QQuickItem *item);
    ~Covering() override;

    // Off at the beginning.
    void setActive(bool active);
    QMarginsF safeInsets() const { return m_safeInsets; }

Q_SIGNALS:
    void safeInsetsChanged();
    void closeKeyPressed();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void enter(QQuickWindow *window);
    void takeFocus();
    void updateSafeInsets();
    bool takeKey(QEvent *event);

    QQuickItem *const m_item;
    QPointer<QQuickWindow> m_window;
    bool m_isActive = false;
    QMarginsF m_safeInsets;
    FocusLoan m_focus;
};

} // namespace znt

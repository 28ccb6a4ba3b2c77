#include "ui/focusloan.h"

#include <QQuickItem>
#include <QQuickWindow>

namespace znt {

namespace {

void restore(QQuickItem *owner, const QQuickItem *borrower)
{
    const QQuickWindow *window = owner->window();
    if (!window)
        return;
    const QQuickItem *now = window->activeFocusItem();
    const bool isBorrowed = borrower && now && (now == borrower || borrower->isAncestorOf(now));
    if (!now || now == window->contentItem() || isBorrowed)
        owner->forceActiveFocus(Qt::OtherFocusReason);
}

} // namespace

void FocusLoan::lend(QQuickItem *item)
{
    if (!item->window() || m_item)
        return;
    m_item = item;
    m_owner = item->window()->activeFocusItem();
    item->forceActiveFocus(Qt::OtherFocusReason);
}

// Queued: this may be the destruction of the window, whose items are not to be touched.
void FocusLoan::giveBack()
{
    const QPointer<QQuickItem> item = std::exchange(m_item, nullptr);
    const QPointer<QQuickItem> owner = std::exchange(m_owner, nullptr);
    if (owner)
        QMetaObject::invokeMethod(
            owner, [item, owner] { restore(owner, item); }, Qt::QueuedConnection);
}

} // namespace znt

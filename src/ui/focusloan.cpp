#include "ui/focusloan.h"

#include <QQuickItem>
#include <QQuickWindow>

namespace znt {

void FocusLoan::lend(QQuickItem *item)
{
    if (!item->window() || m_item)
        return;
    m_item = item;
    m_owner = item->window()->activeFocusItem();
    item->forceActiveFocus(Qt::OtherFocusReason);
}

void FocusLoan::giveBack()
{
    const QPointer<QQuickItem> item = std::exchange(m_item, nullptr);
    const QPointer<QQuickItem> owner = std::exchange(m_owner, nullptr);
    if (!item || !owner || !owner->window())
        return;
    const QQuickWindow *window = owner->window();
    const QQuickItem *now = window->activeFocusItem();
    if (!now || now == window->contentItem() || now == item || item->isAncestorOf(now))
        owner->forceActiveFocus(Qt::OtherFocusReason);
}

} // namespace znt

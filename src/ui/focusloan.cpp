#include "ui/focusloan.h"

#include <QQuickItem>
#include <QQuickWindow>

namespace znt {

namespace {

QList<QPointer<QQuickItem>> scopesAround(const QQuickItem *item)
{
    QList<QPointer<QQuickItem>> scopes;
    for (QQuickItem *at = item->parentItem(); at; at = at->parentItem()) {
        if (at->isFocusScope())
            scopes.append(at);
    }
    return scopes;
}

bool isWithin(const QQuickItem *item, const QQuickItem *ancestor)
{
    return ancestor && (item == ancestor || ancestor->isAncestorOf(item));
}

} // namespace

void FocusLoan::lend(QQuickItem *item)
{
    if (!item->window() || m_item)
        return;
    m_item = item;
    m_owner = item->window()->activeFocusItem();
    m_scopes = scopesAround(item);
    item->forceActiveFocus(Qt::OtherFocusReason);
}

// Queued: this may be the destruction of the window, whose items are not to be touched.
void FocusLoan::giveBack()
{
    if (m_owner)
        QMetaObject::invokeMethod(
            m_owner, [loan = *this] { loan.restore(); }, Qt::QueuedConnection);
    *this = {};
}

void FocusLoan::restore() const
{
    const QQuickWindow *window = m_owner->window();
    QQuickItem *now = window ? window->activeFocusItem() : nullptr;
    if (window && (!now || m_scopes.contains(now) || isWithin(now, m_item)))
        m_owner->forceActiveFocus(Qt::OtherFocusReason);
}

} // namespace znt

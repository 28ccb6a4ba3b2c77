#include "qml/fullscreenad.h"

#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>
#include <QtQml/qqmlinfo.h>

namespace znt {

void FullScreenAd::setShowWhenLoaded(bool show)
{
    if (std::exchange(m_showWhenLoaded, show) != show)
        Q_EMIT showWhenLoadedChanged();
}

void FullScreenAd::load()
{
    State next = m_state;
    next.isLoading = true;
    next.error = {};
    if (setState(next))
        requestAd();
}

void FullScreenAd::show()
{
    QQuickWindow *const over = window();
    if (!over) {
        qmlWarning(this) << "There is no window to show the ad in.";
        return;
    }
    State next = m_state;
    next.isSeen = false;
    const QPointer<QQuickWindow> alive(over);
    if (setState(next) && alive)
        showOver(over);
}

bool FullScreenAd::setState(const State &state)
{
    if (m_state == state)
        return true;
    m_state = state;
    const QPointer<FullScreenAd> self(this);
    Q_EMIT stateChanged();
    return !self.isNull();
}

void FullScreenAd::takeLoaded()
{
    State next = m_state;
    next.isLoading = false;
    next.isReady = true;
    if (!setState(next))
        return;
    const QPointer<FullScreenAd> self(this);
    Q_EMIT loaded();
    if (self && m_showWhenLoaded)
        show();
}

void FullScreenAd::takeFailure(const ZNTError &error)
{
    State next = m_state;
    next.isLoading = false;
    next.error = error;
    if (setState(next))
        Q_EMIT failed(error);
}

void FullScreenAd::takeAppearance()
{
    State next = m_state;
    next.isShown = true;
    if (setState(next))
        Q_EMIT appeared();
}

void FullScreenAd::takeExposure()
{
    State next = m_state;
    next.isSeen = true;
    if (setState(next))
        Q_EMIT rendered();
}

// Of the nearest item or window that the element belongs to.
QQuickWindow *FullScreenAd::window() const
{
    for (QObject *owner = parent(); owner; owner = owner->parent()) {
        if (auto *window = qobject_cast<QQuickWindow *>(owner))
            return window;
        const auto *item = qobject_cast<QQuickItem *>(owner);
        if (item && item->window())
            return item->window();
    }
    return nullptr;
}

} // namespace znt

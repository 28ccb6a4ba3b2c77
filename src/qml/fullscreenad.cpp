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
    const bool isAlive = change([](State &state) {
        state.isLoading = true;
        state.error = {};
    });
    if (isAlive)
        requestAd();
}

void FullScreenAd::show()
{
    QQuickWindow *const over = window();
    if (!over) {
        qmlWarning(this) << "There is no window to show the ad in.";
        return;
    }
    const QPointer<QQuickWindow> alive(over);
    if (change([](State &state) { state.isSeen = false; }) && alive)
        showOver(over);
}

bool FullScreenAd::change(const std::function<void(State &)> &set)
{
    const State before = m_state;
    set(m_state);
    if (m_state == before)
        return true;
    const QPointer<FullScreenAd> self(this);
    Q_EMIT stateChanged();
    return !self.isNull();
}

void FullScreenAd::takeLoaded()
{
    const bool isAlive = change([](State &state) {
        state.isLoading = false;
        state.isReady = true;
    });
    if (!isAlive)
        return;
    const QPointer<FullScreenAd> self(this);
    Q_EMIT loaded();
    if (self && m_showWhenLoaded)
        show();
}

void FullScreenAd::takeFailure(const ZNTError &error)
{
    const bool isAlive = change([&error](State &state) {
        state.isLoading = false;
        state.error = error;
    });
    if (isAlive)
        Q_EMIT failed(error);
}

void FullScreenAd::takeAppearance()
{
    if (change([](State &state) { state.isShown = true; }))
        Q_EMIT appeared();
}

void FullScreenAd::takeExposure()
{
    if (change([](State &state) { state.isSeen = true; }))
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

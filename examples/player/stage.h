// The host's window and what the host itself shows in it.
#pragma once

#include <QQmlEngine>
#include <QQuickWindow>

namespace player {

class Stage
{
public:
    Stage(const QString &title, QSize size);
    ~Stage();

    QQuickWindow &window() { return m_window; }

    // Makes an item of the player's own from NAME.qml; the caller owns it.
    QQuickItem *make(const QString &name);
    // The same, put into the window, which it fills.
    QQuickItem *fill(const QString &name);

    bool screenshot(const QString &path);

private:
    QQmlEngine m_engine;
    QQuickWindow m_window;
};

} // namespace player

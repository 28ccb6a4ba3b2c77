// The host's window and what the host itself shows in it.
#pragma once

#include <QQmlEngine>
#include <QQuickWindow>

#include <memory>

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

    // A line over what is shown, where a person looks at it; none while it is empty.
    void setCaption(const QString &caption);

    // Without the caption.
    bool screenshot(const QString &path);

private:
    QQmlEngine m_engine;
    QQuickWindow m_window;
    std::unique_ptr<QQuickItem> m_caption; // once there was one
};

} // namespace player

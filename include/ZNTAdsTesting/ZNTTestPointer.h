#pragma once

#include <QPointF>

#include <chrono>
#include <memory>

QT_FORWARD_DECLARE_CLASS(QQuickWindow)

/// A person's pointer: real press, move and release events, delivered through the window.
///
/// A point outside of the window gets nothing, as with a person. The window is held weakly; without
/// one nothing happens. Main thread.
class ZNTTestPointer
{
public:
    /// @param window in which it points; null for none
    explicit ZNTTestPointer(QQuickWindow *window);
    /// A pan that is under way is given up.
    ~ZNTTestPointer();
    ZNTTestPointer(const ZNTTestPointer &) = delete;
    ZNTTestPointer &operator=(const ZNTTestPointer &) = delete;

    /// Press and release at @p point, in points of the window.
    void tap(const QPointF &point);
    /// Press at @p from, move by @p by evenly over @p time of real time, release. Returns at once;
    /// a pan that is still under way ends first.
    void pan(const QPointF &from, const QPointF &by, std::chrono::milliseconds time);
    /// The same at once: the events carry the times that they would have.
    void panAtOnce(const QPointF &from, const QPointF &by, std::chrono::milliseconds time);

private:
    class Private;
    const std::unique_ptr<Private> d;
};

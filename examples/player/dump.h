// The window's items as the host sees them.
#pragma once

#include <QJsonObject>
#include <QQuickWindow>

namespace player {

// All items of the window, for a script to read.
QJsonObject dumpOf(QQuickWindow &window);

// The nearest item of that name in the tree below the root, or the root itself; null if none.
QQuickItem *itemNamed(QQuickItem *root, const QString &name);

// Whether the item is on screen, with nothing of it or its ancestors faded.
bool isOnScreen(const QQuickItem *item);

// Whether each visible image view of the tree has its picture, ready to be drawn.
bool hasPictures(const QQuickItem *root);

} // namespace player

#include "support/visibleshare.h"

#include <QQuickItem>
#include <QQuickWindow>

namespace znt {

namespace {

QRectF boundsOf(const QQuickItem *item)
{
    return {0, 0, item->width(), item->height()};
}

std::optional<double> percentage(const QRectF &part, const QQuickItem *item)
{
    const QQuickItem *root = item->window()->contentItem();
    const QRectF shown = part.intersected(boundsOf(root));
    const double area = item->width() * item->height();
    if (shown.isEmpty() || !(area > 0))
        return {};
    return shown.width() * shown.height() / area * 100;
}

bool isHiddenByAny(const QQuickItem *item)
{
    if (!item->isVisible()) // knows the ancestors
        return true;
    for (; item; item = item->parentItem()) {
        if (item->opacity() == 0)
            return true;
    }
    return false;
}

} // namespace

std::optional<double> visibleShare(const QQuickItem *item)
{
    if (!item || !item->window() || isHiddenByAny(item))
        return {};
    const QQuickItem *root = item->window()->contentItem();
    QRectF part = boundsOf(item);
    for (const QQuickItem *at = item; at != root;) {
        const QQuickItem *parent = at->parentItem();
        if (!parent)
            break;
        part = at->mapRectToItem(parent, part);
        if (parent->clip()) {
            part = part.intersected(boundsOf(parent));
            if (part.isEmpty())
                return {};
        }
        at = parent;
    }
    return percentage(part, item);
}

std::optional<double> shareInWindow(const QQuickItem *item)
{
    if (!item || !item->window())
        return {};
    return percentage(item->mapRectToScene(boundsOf(item)), item);
}

} // namespace znt

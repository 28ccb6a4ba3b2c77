#include "support/visibleshare.h"

#include <QQuickItem>
#include <QQuickRenderControl>
#include <QQuickWindow>

namespace znt {

namespace {

QRectF boundsOf(const QQuickItem *item)
{
    return {0, 0, item->width(), item->height()};
}

// Items show their transform list to QML alone, as a property. Reading it costs as much as the rest
// of a step; its functions are the same for every item, so they are read once and asked about
// another object.
class TransformList
{
public:
    explicit TransformList(const QQuickItem *any)
    {
        const int property = QQuickItem::staticMetaObject.indexOfProperty("transform");
        void *arguments[] = {&m_list};
        const_cast<QQuickItem *>(any)->QQuickItem::qt_metacall(
            QMetaObject::ReadProperty, property, arguments);
    }

    qsizetype countOf(const QQuickItem *item)
    {
        m_list.object = const_cast<QQuickItem *>(item);
        return m_list.count ? m_list.count(&m_list) : 1;
    }

private:
    QQmlListProperty<QQuickTransform> m_list;
};

bool hasTransformList(const QQuickItem *item)
{
    static TransformList list(item);
    return list.countOf(item) > 0;
}

// About its transform origin; the positions count row by row from the top left.
QTransform scaledAndRotated(const QQuickItem *item)
{
    static_assert(QQuickItem::TopRight == 2 && QQuickItem::BottomRight == 8);
    const int position = item->transformOrigin();
    const QPointF origin(item->width() / 2 * (position % 3), item->height() / 2 * (position / 3));
    const QPointF moved = item->position() + origin;
    QTransform transform = QTransform::fromTranslate(moved.x(), moved.y());
    transform.scale(item->scale(), item->scale());
    transform.rotate(item->rotation());
    return transform.translate(-origin.x(), -origin.y());
}

bool onlyMoves(const QQuickItem *item)
{
    return item->scale() == 1 && item->rotation() == 0 && !hasTransformList(item);
}

// The bounding rectangle of `part` in the coordinates of the item's parent.
QRectF inParent(const QQuickItem *item, const QRectF &part)
{
    if (hasTransformList(item))
        return item->mapRectToItem(item->parentItem(), part);
    return scaledAndRotated(item).mapRect(part);
}

bool showsNothing(const QWindow *window)
{
    return !window->isVisible() || window->opacity() == 0
        || window->windowStates().testFlag(Qt::WindowMinimized);
}

// The window in which people see what `window` draws; not the same inside a widget.
const QWindow *shownWindow(QQuickWindow *window)
{
    const QWindow *shown = QQuickRenderControl::renderWindowFor(window);
    return shown ? shown : window;
}

// Of the part that is left of the item, in the window's coordinates.
std::optional<double> percentage(const QRectF &part, const QQuickItem *item)
{
    const QRectF shown = part.intersected(QRectF(QPointF(), item->window()->size()));
    const double area = item->width() * item->height();
    if (shown.isEmpty() || !(area > 0))
        return {};
    return shown.width() * shown.height() / area * 100;
}

} // namespace

std::optional<double> visibleShare(const QQuickItem *item)
{
    // An item's visibility knows the ancestors', its opacity does not.
    if (!item || !item->window() || !item->isVisible() || showsNothing(shownWindow(item->window())))
        return {};
    QRectF part = boundsOf(item);
    QPointF offset; // still to be added to the part
    for (const QQuickItem *at = item; at; at = at->parentItem()) {
        if (at->opacity() == 0)
            return {};
        if (at != item && at->clip()) {
            part = part.translated(offset).intersected(boundsOf(at));
            offset = {};
            if (part.isEmpty())
                return {};
        }
        if (onlyMoves(at)) {
            offset += at->position();
        } else {
            part = inParent(at, part.translated(offset));
            offset = {};
        }
    }
    return percentage(part.translated(offset), item);
}

std::optional<double> shareInWindow(const QQuickItem *item)
{
    if (!item || !item->window())
        return {};
    return percentage(item->mapRectToScene(boundsOf(item)), item);
}

} // namespace znt

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

// The items from `first` up to `end`, which is not among them.
VisibleShares::Run runFrom(const QQuickItem *first, const QQuickItem *end)
{
    VisibleShares::Run run;
    run.first = first;
    const QQuickItem *at = first;
    while (at && at != end && !run.turned && !run.isClear) {
        run.isClear = at->opacity() == 0;
        if (at->clip()) {
            const QRectF bounds = boundsOf(at).translated(-run.offset);
            run.clip = run.clip ? run.clip->intersected(bounds) : bounds;
        }
        if (onlyMoves(at))
            run.offset += at->position();
        else
            run.turned = at;
        at = at->parentItem();
    }
    run.next = at;
    return run;
}

bool showsNothing(const QWindow *window)
{
    const QWindow::Visibility visibility = window->visibility();
    return visibility == QWindow::Hidden || visibility == QWindow::Minimized
        || window->opacity() == 0;
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

std::optional<double> VisibleShares::of(const QQuickItem *item)
{
    // An item's visibility knows the ancestors', its opacity does not.
    if (!item || !item->window() || !item->isVisible() || showsNothing(shownWindow(item->window())))
        return {};
    const QQuickItem *parent = item->parentItem();
    const QQuickItem *grandparent = parent ? parent->parentItem() : nullptr;
    if (grandparent && grandparent != m_shared.first)
        m_shared = runFrom(grandparent, nullptr);
    QRectF part = boundsOf(item);
    for (const QQuickItem *at = item; at;) {
        const Run &run = at == m_shared.first ? m_shared : runFrom(at, grandparent);
        if (run.clip)
            part = part.intersected(*run.clip);
        if (run.isClear || part.isEmpty())
            return {};
        part.translate(run.offset);
        if (run.turned)
            part = inParent(run.turned, part);
        at = run.next;
    }
    return percentage(part, item);
}

std::optional<double> visibleShare(const QQuickItem *item)
{
    return VisibleShares().of(item);
}

std::optional<double> shareInWindow(const QQuickItem *item)
{
    if (!item || !item->window())
        return {};
    return percentage(item->mapRectToScene(boundsOf(item)), item);
}

} // namespace znt

#include "ui/visibleshare.h"

#include <QQuickItem>
#include <QQuickRenderControl>
#include <QQuickWindow>

namespace znt {

namespace {

using Edges = VisibleShares::Edges;

Edges boundsOf(const QQuickItem *item)
{
    return {0, 0, item->width(), item->height()};
}

QRectF rectangle(const Edges &edges)
{
    return {QPointF(edges.left, edges.top), QPointF(edges.right, edges.bottom)};
}

Edges edgesOf(const QRectF &rectangle)
{
    return {rectangle.left(), rectangle.top(), rectangle.right(), rectangle.bottom()};
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

Q_ALWAYS_INLINE bool hasTransformList(const QQuickItem *item)
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
Edges inParent(const QQuickItem *item, const Edges &part)
{
    return edgesOf(hasTransformList(item) ? item->mapRectToItem(item->parentItem(), rectangle(part))
                                          : scaledAndRotated(item).mapRect(rectangle(part)));
}

// The items from `first` up to `end`, which is not among them.
VisibleShares::ClipRun runFrom(const QQuickItem *first, const QQuickItem *end)
{
    VisibleShares::ClipRun run;
    run.first = first;
    const QQuickItem *at = first;
    while (at && at != end && !run.turned) {
        if (at->opacity() == 0) {
            run.isClear = true;
            break;
        }
        if (at->clip())
            run.clip.cut(boundsOf(at), -run.x, -run.y);
        if (!onlyMoves(at))
            run.turned = at;
        const QPointF position = run.turned ? QPointF() : at->position();
        run.x += position.x();
        at = at->parentItem(); // in between: adding both halves in one go stalls the processor
        run.y += position.y();
    }
    run.next = at;
    return run;
}

// The window in which the user sees what `window` draws; not the same inside a widget.
const QWindow *shownWindow(const QQuickWindow *window)
{
    const QWindow *shown = QQuickRenderControl::renderWindowFor(const_cast<QQuickWindow *>(window));
    return shown ? shown : window;
}

bool isShown(const QWindow *window)
{
    const QWindow::Visibility visibility = window->visibility();
    return visibility != QWindow::Hidden && visibility != QWindow::Minimized
        && window->opacity() != 0;
}

Edges frameOf(const QQuickWindow *window)
{
    const QSize size = window->size();
    return {0, 0, double(size.width()), double(size.height())};
}

// Of the part that is left of the item, in the window's coordinates.
std::optional<double> percentage(Edges part, const QQuickItem *item, const Edges &window)
{
    part.cut(window, 0, 0);
    const double area = boundsOf(item).area();
    if (part.isEmpty() || !(area > 0))
        return {};
    return part.area() / area * 100;
}

} // namespace

std::optional<double> VisibleShares::of(const QQuickItem *item)
{
    // An item's visibility knows the ancestors', its opacity does not.
    if (!item || !item->window() || !item->isVisible())
        return {};
    if (item->window() != m_window) {
        m_window = item->window();
        m_frame = isShown(shownWindow(m_window)) ? frameOf(m_window) : Edges{0, 0, 0, 0};
    }
    const QQuickItem *parent = item->parentItem();
    const QQuickItem *grandparent = parent ? parent->parentItem() : nullptr;
    if (grandparent && grandparent != m_shared.first)
        m_shared = runFrom(grandparent, nullptr);
    Edges part = boundsOf(item);
    for (const QQuickItem *at = item; at;) {
        const ClipRun &run = at == m_shared.first ? m_shared : runFrom(at, grandparent);
        part.cut(run.clip, 0, 0);
        if (run.isClear || part.isEmpty())
            return {};
        part.move(run.x, run.y);
        if (run.turned)
            part = inParent(run.turned, part);
        at = run.next;
    }
    return percentage(part, item, m_frame);
}

std::optional<double> visibleShare(const QQuickItem *item)
{
    return VisibleShares().of(item);
}

std::optional<double> shareInWindow(const QQuickItem *item)
{
    if (!item || !item->window())
        return {};
    const Edges part = edgesOf(item->mapRectToScene(rectangle(boundsOf(item))));
    return percentage(part, item, frameOf(item->window()));
}

} // namespace znt

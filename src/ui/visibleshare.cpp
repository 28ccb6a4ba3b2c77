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

// Qt's item views are private types; their meta-objects are known by name, once.
bool inheritsOnce(const QQuickItem *item, const char *name, const QMetaObject *&known)
{
    const QMetaObject *type = item->metaObject();
    while (type != &QQuickItem::staticMetaObject && type != known) {
        if (!known && qstrcmp(type->className(), name) == 0)
            known = type;
        else
            type = type->superClass();
    }
    return type == known;
}

bool isItemView(const QQuickItem *item)
{
    static const QMetaObject *itemView = nullptr;
    return inheritsOnce(item, "QQuickItemView", itemView);
}

bool isGridView(const QQuickItem *item)
{
    static const QMetaObject *gridView = nullptr;
    return inheritsOnce(item, "QQuickGridView", gridView);
}

bool isTableView(const QQuickItem *item)
{
    static const QMetaObject *tableView = nullptr;
    return inheritsOnce(item, "QQuickTableView", tableView);
}

struct Scrolling
{
    bool isAcross;
    bool isReversed;
    double cell; // along the way of a GridView, which looks at cells; else 0
};

Scrolling scrollingOf(const QQuickItem *itemView)
{
    const auto is = [itemView](const char *property, int value) {
        return itemView->property(property).toInt() == value;
    };
    const auto cell = [itemView](const char *size) { return itemView->property(size).toDouble(); };
    const bool isGrid = itemView->property("flow").isValid();
    if (isGrid ? !is("flow", 0) : is("orientation", Qt::Horizontal))
        return {true, is("effectiveLayoutDirection", Qt::RightToLeft), cell("cellWidth")};
    constexpr int bottomToTop = 3; // QQuickItemView::BottomToTop
    return {false, is("verticalLayoutDirection", bottomToTop), cell("cellHeight")};
}

bool isOutside(double from, double length, double size)
{
    return from + length <= 0 || from >= size;
}

// What only touches an edge is not.
bool isBeyond(double from, double length, double size)
{
    return from + length < 0 || from > size;
}

// Item views draw what lies within their edges and margins along the way that they scroll, whether
// they clip or not, and their header and footer wherever these are.
bool isCulledFrom(const QQuickItem *itemView, const QQuickItem *row, const QPointF &position)
{
    const Scrolling scrolling = scrollingOf(itemView);
    double first = itemView->property("displayMarginBeginning").toDouble();
    double last = itemView->property("displayMarginEnd").toDouble();
    if (scrolling.isReversed)
        std::swap(first, last);
    const auto length = [&scrolling](
                            double size) { return scrolling.cell ? scrolling.cell : size; };
    const bool beyond = scrolling.isAcross
        ? isBeyond(position.x() + first, length(row->width()), itemView->width() + first + last)
        : isBeyond(position.y() + first, length(row->height()), itemView->height() + first + last);
    const auto is = [&](const char *part) {
        return itemView->property(part).value<QQuickItem *>() == row;
    };
    return beyond && !is("headerItem") && !is("footerItem");
}

// A row that its view keeps for later use stays where it was.
bool isPooled(const QQuickItem *itemView, const QQuickItem *row)
{
    if (!itemView->property("reuseItems").toBool())
        return false;
    auto *const view = const_cast<QQuickItem *>(itemView);
    const QPointF centre = row->position() + row->boundingRect().center();
    int index = -1;
    QMetaObject::invokeMethod(view, "indexAt", Q_RETURN_ARG(int, index), Q_ARG(qreal, centre.x()),
        Q_ARG(qreal, centre.y()));
    QQuickItem *held = nullptr;
    QMetaObject::invokeMethod(view, "itemAtIndex",
        QReturnArgument<QQuickItem *>("QQuickItem*", held), QArgument<int>("int", index));
    return index >= 0 && held != row;
}

bool isCulled(const QQuickItem *row)
{
    const QQuickItem *content = row->parentItem();
    const QQuickItem *view = content ? content->parentItem() : nullptr;
    if (!view || !(view->flags() & QQuickItem::ItemIsViewport))
        return false;
    if (isItemView(view) && isPooled(view, row))
        return true;
    const QPointF position = row->position() + content->position();
    const bool isInside = !isOutside(position.x(), row->width(), view->width())
        && !isOutside(position.y(), row->height(), view->height());
    // A row that is larger than its cell may reach in while the cell, and so the row, is culled.
    if (isInside && !isGridView(view))
        return false;
    return isTableView(view) || (isItemView(view) && isCulledFrom(view, row, position));
}

// The items from `first` up to `end`, which is not among them.
VisibleShares::ClipRun runFrom(const QQuickItem *first, const QQuickItem *end)
{
    VisibleShares::ClipRun run;
    run.first = first;
    const QQuickItem *at = first;
    while (at && at != end && !run.turned) {
        run.isUndrawn = at->opacity() == 0 || isCulled(at);
        if (run.isUndrawn)
            break;
        if (at->clip())
            run.clip.cut(boundsOf(at), -run.x, -run.y);
        if (!onlyMoves(at))
            run.turned = at;
        const QPointF position = run.turned ? QPointF() : at->position();
        run.x += position.x();
        run.y += position.y();
        at = at->parentItem();
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

// A window may lie within another.
bool isShown(const QWindow *window)
{
    if (!window->isExposed())
        return false;
    for (; window; window = window->parent()) {
        const QWindow::Visibility visibility = window->visibility();
        if (visibility == QWindow::Hidden || visibility == QWindow::Minimized
            || window->opacity() == 0)
            return false;
    }
    return true;
}

Edges frameOf(const QQuickWindow *window)
{
    const QSize size = window->size();
    return {0, 0, double(size.width()), double(size.height())};
}

// Of what is left of the item.
std::optional<double> percentage(const Edges &part, const QQuickItem *item)
{
    const double area = boundsOf(item).area();
    if (part.isEmpty() || !(area > 0))
        return {};
    return part.area() / area * 100;
}

} // namespace

// The part stays in the coordinates of the item, or of what lies above the last turned one, because
// its sides would lose their last digits on the way.
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
    double x = 0;
    double y = 0;
    for (const QQuickItem *at = item; at;) {
        const ClipRun &run = at == m_shared.first ? m_shared : runFrom(at, grandparent);
        part.cut(run.clip, -x, -y);
        if (run.isUndrawn || part.isEmpty())
            return {};
        x += run.x;
        y += run.y;
        if (run.turned) {
            part.move(std::exchange(x, 0), std::exchange(y, 0));
            part = inParent(run.turned, part);
        }
        at = run.next;
    }
    part.cut(m_frame, -x, -y);
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
    Edges part = edgesOf(item->mapRectToScene(rectangle(boundsOf(item))));
    part.cut(frameOf(item->window()), 0, 0);
    return percentage(part, item);
}

} // namespace znt

std::optional<double> ZNTVisibility::share(const QQuickItem *item)
{
    return znt::visibleShare(item);
}

namespace {

using Obstacle = ZNTVisibility::Obstacle;

// What is left of an item on its way up to the window, and what has taken the most of it.
struct Remains
{
    void cut(const znt::Edges &by, Obstacle obstacle)
    {
        znt::Edges rest = part;
        rest.cut(by, 0, 0);
        become(rest, obstacle);
    }
    void become(const znt::Edges &rest, Obstacle obstacle)
    {
        const double before = part.isEmpty() ? 0 : part.area();
        const double after = rest.isEmpty() ? 0 : rest.area();
        const double lost = before > 0 ? left * (1 - after / before) : 0;
        part = rest;
        left -= lost;
        if (lost > most) {
            most = lost;
            worst = obstacle;
        }
    }

    znt::Edges part;
    double left = 1;
    double most = 1e-9; // less is rounding
    Obstacle worst;
};

} // namespace

Obstacle ZNTVisibility::obstacle(const QQuickItem *item)
{
    using namespace znt;
    if (!item || !item->window())
        return {Obstacle::NoWindow, nullptr};
    if (!item->isVisible()) {
        while (item->parentItem() && !item->parentItem()->isVisible())
            item = item->parentItem();
        return {Obstacle::Hidden, item};
    }
    if (!isShown(shownWindow(item->window())))
        return {Obstacle::WindowNotShown, nullptr};
    Remains remains;
    remains.part = boundsOf(item);
    if (!(remains.part.area() > 0))
        return {Obstacle::NoSize, item};
    for (const QQuickItem *at = item; at; at = at->parentItem()) {
        if (at->opacity() == 0)
            return {Obstacle::Transparent, at};
        if (isCulled(at))
            return {Obstacle::Undrawn, at};
        if (at->clip())
            remains.cut(boundsOf(at), {Obstacle::Clip, at});
        remains.become(inParent(at, remains.part), {Obstacle::Scaled, at});
    }
    remains.cut(frameOf(item->window()), {Obstacle::WindowEdge, nullptr});
    return remains.worst;
}

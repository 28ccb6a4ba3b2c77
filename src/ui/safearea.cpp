#include "ui/safearea.h"

#include "support/mainthread.h"

#include <QQuickItem>
#include <QQuickWindow>

namespace znt {

namespace {

double positive(double value)
{
    return value > 0 ? value : 0;
}

QMarginsF positive(double left, double top, double right, double bottom)
{
    return {positive(left), positive(top), positive(right), positive(bottom)};
}

} // namespace

SafeArea *SafeArea::instance()
{
    return &neverDestroyed<SafeArea>();
}

void SafeArea::setInsets(const QMarginsF &insets)
{
    const QMarginsF valid = positive(insets.left(), insets.top(), insets.right(), insets.bottom());
    if (valid == m_insets)
        return;
    m_insets = valid;
    Q_EMIT changed();
}

QMarginsF safeInsetsOf(const QQuickItem *item)
{
    if (!item->window())
        return {};
    const QMarginsF insets = SafeArea::instance()->insets();
    const QRectF frame = item->mapRectToScene(item->boundingRect());
    const QSize window = item->window()->size();
    return positive(insets.left() - frame.left(), insets.top() - frame.top(),
        frame.right() - (window.width() - insets.right()),
        frame.bottom() - (window.height() - insets.bottom()));
}

} // namespace znt

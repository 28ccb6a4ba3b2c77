#include "ui/press.h"

#include <QGuiApplication>
#include <QStyleHints>

namespace znt {

namespace {

constexpr qint64 velocitySpan = 100; // ms

} // namespace

void Press::begin(QPointF at, qint64 ms)
{
    m_start = at;
    m_isPan = false;
    m_samples = {{at, ms}};
}

void Press::move(QPointF at, qint64 ms)
{
    if (!isActive())
        return;
    m_samples.append({at, ms});
    while (m_samples.size() > 2 && ms - m_samples.at(1).ms >= velocitySpan)
        m_samples.removeFirst();
    const QPointF way = translation();
    const double slop = QGuiApplication::styleHints()->startDragDistance();
    m_isPan = m_isPan || QPointF::dotProduct(way, way) > slop * slop;
}

QPointF Press::translation() const
{
    return isActive() ? m_samples.last().at - m_start : QPointF();
}

QPointF Press::velocity() const
{
    if (!isActive())
        return {};
    const qint64 ms = m_samples.last().ms - m_samples.first().ms;
    return ms > 0 ? (m_samples.last().at - m_samples.first().at) * 1000 / ms : QPointF();
}

} // namespace znt

#pragma once

#include <QRectF>
#include <QRegularExpression>
#include <QStringList>

namespace znt::test {

// "name x y width height" of each, as tests write frames down.
inline QStringList framesIn(const QString &text)
{
    return text.simplified().split(QRegularExpression(QStringLiteral(" (?=[a-zA-Z])")));
}

inline QString frameText(const QString &name, const QRectF &frame)
{
    QStringList words{name};
    for (const double value : {frame.x(), frame.y(), frame.width(), frame.height()})
        words.append(QString::number(value, 'g', 6));
    return words.join(u' ');
}

} // namespace znt::test

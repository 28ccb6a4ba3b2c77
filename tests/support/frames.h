// Frames, as tests write them down: "name x y width height" of each item.
#pragma once

#include "support/test.h"

namespace znt::test {

// What the text says, with the frames that its items have now; compare it with text.simplified().
template <class FrameOf>
QString framesNow(const QString &text, FrameOf frameOf)
{
    QStringList words;
    for (const QString &line : text.simplified().split(QRegularExpression(" (?=[a-zA-Z])"))) {
        words.append(line.section(u' ', 0, 0));
        const QRectF frame = frameOf(words.last());
        for (const double value : {frame.x(), frame.y(), frame.width(), frame.height()})
            words.append(QString::number(value, 'g', 6));
    }
    return words.join(u' ');
}

} // namespace znt::test

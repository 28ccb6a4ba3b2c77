// What is cut or unreadable in an ad as it is drawn.
#pragma once

#include <QImage>
#include <QQuickItem>
#include <QStringList>

namespace player {

// The picture is of the ad's window, in as many pixels a point as its device pixel ratio says. One
// line for each: texts that are elided, texts and controls that lie off screen or over one another,
// texts whose contrast is under 3 to 1, pictures that are missing.
QStringList findingsIn(const QQuickItem *ad, const QImage &picture);

} // namespace player

// One ad of an answer, drawn once by the library's own views.
#pragma once

#include "sheet.h"

#include <QJsonObject>
#include <QSize>

namespace player {

// What draws it.
struct Drawing
{
    enum Kind { Splash, Interstitial, Feed };

    QString label;
    Kind kind = Splash;
    int style = 0; // of the splash, or the number of the template
};

// All of them.
QList<Drawing> drawings();

// Runs the event loop until the ad is there with its pictures, for `patience` milliseconds at most,
// which is shortened once they have not come. `size` in points.
Cell drawCell(
    const Drawing &drawing, const QJsonObject &answer, QSize size, double scale, int *patience);

} // namespace player

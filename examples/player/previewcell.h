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

// Runs the event loop until the ad is there, or is not to come. `size` in points.
Cell drawCell(const Drawing &drawing, const QJsonObject &answer, QSize size, double scale);

} // namespace player

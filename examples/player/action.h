// One thing that a script does at a point in time: `tap:skipButton`, `pan:120,0,200`, …
#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace player {

constexpr double longestSeconds = 1'000'000; // a timer counts milliseconds in 31 bits

struct Action
{
    enum class Kind {
        Tap,
        Pan,
        Tilt,
        Shake,
        Close,
        Hide,
        Show,
        Alpha,
        Move,
        Scroll,
        Screenshot,
        Dump,
        Defaults,
        Quit,
    };

    Kind kind = Kind::Quit;
    double at = 0; // seconds after the show call returned
    QString text;  // as it was given
    QString name;  // of an item, or of a file
    int row = 0;
    QList<double> numbers;
};

// Reads "T:ACTION"; nothing when it is off.
std::optional<Action> readTimedAction(const QString &text);

} // namespace player

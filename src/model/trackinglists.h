// The three tracking lists of an ad, as an ad manager reads them: each a list or one string.
#pragma once

#include "model/ad.h"

namespace znt {

struct TrackingLists
{
    QJsonArray view;
    // Not always a list: see ClickForm::OfView.
    QJsonValue click;
    QJsonArray dpEvent;
};

// Whose form decides how the click value is read.
enum class ClickForm {
    OfClick, // its own
    OfView,  // the view value's: a string has the click value wrapped into a list whatever it is, a
             // list has it stored as it is, and anything else leaves the click list as it was
};

// The log lines of one list; %1, where there is one, is the number of its elements.
struct TrackingTexts
{
    const char *list;
    const char *single;
};

// Reads the values into the lists. What is missing or of a wrong type leaves its list as it was.
ZNTADS_INTERNAL void readTrackingLists(TrackingLists &lists, const std::optional<TrackInfo> &info,
    ClickForm clickForm, const TrackingTexts &dpEventTexts);

} // namespace znt

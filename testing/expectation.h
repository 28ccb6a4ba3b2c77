// What the expectations of the kit share.
#pragma once

#include <QString>

#include <functional>

namespace znt::testing {

// Runs the event loop until it holds or the milliseconds of real time have passed; whether it
// holds.
bool waitFor(const std::function<bool()> &holds, int milliseconds);

// Lets what is on its way arrive, to see that there is no more of it.
void settle();

// Said with what is missing while the time is held.
QString clockNote();

} // namespace znt::testing

// Opens where a click leads: the deep link, else the web page.
#pragma once

#include "model/ad.h"

#include <functional>

namespace znt {

// Opens the deep link, or the web page when there is none or it cannot be opened. `handedOver` is
// called in a later event-loop iteration, when the system was asked for the last time; never when
// there is no target.
void openClickTarget(const ClickTarget &target, std::function<void()> handedOver);

} // namespace znt

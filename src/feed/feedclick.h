// What a click on a feed ad leads to.
#pragma once

#include <functional>

class ZNTFeedAdData;

namespace znt {

// Fires the record's trackers and opens its target; `opened` then runs on the main thread.
void followClick(const ZNTFeedAdData &ad, std::function<void()> opened);

} // namespace znt

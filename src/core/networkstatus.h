// Follows the network path: is it usable, and does it go over Wi-Fi?
#pragma once

#include <functional>

namespace znt {

// Calls back on the main thread at once and after every change, for the life of the process. On a
// platform without path information it never does.
void followNetworkPath(std::function<void(bool isWiFi)> changed);

} // namespace znt

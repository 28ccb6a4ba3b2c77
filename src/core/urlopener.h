// Opens what a click leads to, outside of the application.
#pragma once

#include <ZNTAds/ZNTAdsSDK.h>

namespace znt {

// Has the host's opener, or the system where there is none, open the link as it is. `done` gets
// whether that worked, at once or later. Links that an ad may not lead to are never opened. Main
// thread.
ZNTADS_INTERNAL void openLink(const QString &link, std::function<void(bool opened)> done);

// The same, whatever the host has set.
void openLinkWithSystem(const QString &link, std::function<void(bool opened)> done);

// Take the system's place, the latter before the former; empty brings it back. Main thread.
ZNTADS_INTERNAL void setUrlOpener(ZNTAdsSDK::UrlOpener opener);
ZNTADS_INTERNAL void setLinkOpener(ZNTAdsSDK::LinkOpener opener);

} // namespace znt

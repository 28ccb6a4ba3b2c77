// Opens what a click leads to, outside of the application.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QString>
#include <QUrl>

#include <functional>

namespace znt {

// Whether the host's opener, or the platform where there is none, has opened the address. Addresses
// that lead into the application or to local files are never opened. Main thread.
bool openUrl(const QString &text);

// Replaces the platform's way to open a URL; empty brings it back. Main thread.
ZNTADS_INTERNAL void setUrlOpener(std::function<bool(const QUrl &)> opener);

} // namespace znt

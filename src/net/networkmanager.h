// Network access managers that can be let go at any moment, whatever a server does to them.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QNetworkAccessManager>
#include <QUrl>

#include <chrono>
#include <memory>

namespace znt {

// A manager for requests to the origin. Its last owner never waits for it, and then deletes its
// replies at once: Qt reads a manager's connections on a thread of the manager's own, which a plain
// http server holds by headers without end, unseen by abort(), and the destructor waits five
// seconds for that thread. So it runs on another thread, and afterwards the connections to the
// origin are cut, where the system has a way to (Linux, Android, macOS, iOS), which frees the
// manager's thread.
std::shared_ptr<QNetworkAccessManager> makeNetworkManager(const QUrl &origin);

// Waits until the managers that were let go are destroyed, but no longer than that.
ZNTADS_INTERNAL void waitForDiscardedManagers(std::chrono::milliseconds most);

} // namespace znt

// The library's HTTP sessions.
#pragma once

#include "net/httpclient.h"

namespace znt {

// Made at first use, gone with the application object.
enum class Session {
    Exchange, // the exchange's endpoints, on the main thread
    Shared,   // tracking, on the main thread
    Reports,  // error reports, on the main thread
    Images,   // creatives' pictures, on a thread of its own
};

// From any thread; `done` runs in the session's. Drops the request when there is no application
// object.
ZNTADS_INTERNAL void sendHttp(Session session, const HttpRequest &request, HttpClient::Done done);

} // namespace znt

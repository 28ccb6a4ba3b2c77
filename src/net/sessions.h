// The library's HTTP sessions.
#pragma once

#include "net/httpclient.h"

namespace znt {

// Made at first use, gone with the application object. They share a thread of the library's own:
// an answer of megabytes keeps it busy for tens of milliseconds.
enum class Session {
    Exchange, // the exchange's endpoints
    Tracking,
    Reports, // error reports
    Images,  // creatives' pictures and videos
};

// From any thread; `done` runs, and is destroyed, on the main thread, for Images in the sessions'.
// Drops the request when there is no application object.
ZNTADS_INTERNAL void sendHttp(Session session, const HttpRequest &request, HttpClient::Done done);

} // namespace znt

// One HTTP session: requests with bounds on time and size, one wire request a call.
#pragma once

#include <ZNTAds/ZNTError.h>

#include <QNetworkAccessManager>
#include <QNetworkCookieJar>
#include <QObject>
#include <QTimer>
#include <QUrl>

#include <chrono>
#include <deque>
#include <functional>
#include <list>
#include <optional>

namespace znt {

// The URL goes out as it is written but for what QUrl cannot carry:
// - an escape of a letter, a digit or one of -._~ goes out as that character, and the hexadecimal
//   digits of the others in upper case;
// - the segments "." and ".." of the path are resolved;
// - blanks, control characters, "<>\^`{|} and all beyond ASCII are escaped; a % that begins no
//   escape is, too;
// - scheme and host go out in lower case, a host that is a number as an IPv4 address;
// - the fragment and the user's name and password are left out.
struct HttpRequest
{
    QString url;
    QByteArray method = "GET";
    QList<QPair<QByteArray, QByteArray>> headers{};
    QByteArray body{};
};

struct HttpAnswer
{
    // A failure of the transfer itself. An HTTP status never is one.
    std::optional<ZNTError> error;
    int status = 0;
    QByteArray body{};
};

struct HttpLimits
{
    std::chrono::milliseconds inactivity{15'000}; // matters where it is less than the total
    std::chrono::milliseconds total{15'000};
    // Of the body as it arrives and of what it expands to.
    qint64 bytes = 16 * 1024 * 1024;
    // The body is read and thrown away; past `bytes` the answer counts as complete.
    bool discardBody = false;
    // Qt may send a request again whose connection drops before the answer.
    bool mayResend = false;
    // No request goes out on a connection that has served another: a server may have left it.
    bool onFreshConnection = false;
};

class ZNTADS_INTERNAL HttpClient : public QObject
{
    Q_OBJECT

public:
    using Done = std::function<void(const HttpAnswer &)>;

    explicit HttpClient(const HttpLimits &limits, QObject *parent = nullptr);
    ~HttpClient() override;

    // From any thread; `done` runs in the client's own, exactly once unless the client is destroyed
    // before. Only http and https are sent, anything else and a URL of more than 65,536 characters
    // is a failure. Each request is begun in its own iteration of the event loop, when fewer than
    // six are in flight to the same origin (scheme, host and port); its time runs from then on.
    // Redirections are followed, but never from https to http. Headers and body do not leave the
    // first origin: elsewhere a redirection is followed without the headers, and refused when it
    // would have to take the body along.
    void send(const HttpRequest &request, Done done);

private:
    struct Call
    {
        HttpRequest request;
        Done done;
    };
    // What is in flight to one origin, or waits for that. It goes with its last request, and its
    // connections with it.
    struct Origin
    {
        QUrl url;
        std::shared_ptr<QNetworkAccessManager> manager;
        int inFlight = 0;
        bool isClosed = false; // takes no further request
        std::deque<Call> pending{};
    };
    struct RedirectState
    {
        QUrl url;
        qint64 deadline; // of now()
        int count = 0;
    };
    void enqueue(Call call);
    void startNext();
    void start(const Call &call, const RedirectState &state);
    void finish(Origin &origin, bool closes);
    bool follow(const Call &call, const RedirectState &state, const QUrl &target, int status);
    Origin &originOf(const QUrl &url);
    std::shared_ptr<QNetworkAccessManager> managerFor(const QUrl &origin);
    QNetworkReply *request(
        QNetworkAccessManager &manager, const QUrl &url, const HttpRequest &request) const;

    HttpLimits m_limits;
    QNetworkCookieJar m_cookies;
    QTimer m_nextStart;
    std::deque<Call> m_pending;
    std::list<Origin> m_origins;
};

} // namespace znt

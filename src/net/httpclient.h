// One HTTP session: requests with bounds on time and size, one wire request a call.
#pragma once

#include <ZNTAds/ZNTError.h>

#include <QDeadlineTimer>
#include <QNetworkAccessManager>
#include <QObject>
#include <QTimer>
#include <QUrl>

#include <chrono>
#include <deque>
#include <functional>
#include <optional>

namespace znt {

struct HttpRequest
{
    QUrl url;
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
};

class ZNTADS_INTERNAL HttpClient : public QObject
{
    Q_OBJECT

public:
    using Done = std::function<void(const HttpAnswer &)>;

    explicit HttpClient(const HttpLimits &limits, QObject *parent = nullptr);

    // From any thread; `done` runs in the client's own, exactly once unless the client is destroyed
    // before. Only http and https are sent, anything else is a failure. Redirections are followed,
    // but never from https to http. Of many requests only some are under way at a time, each begun
    // in a turn of the event loop of its own; a request's time begins then.
    void send(const HttpRequest &request, Done done);

private:
    struct Call
    {
        HttpRequest request;
        Done done;
    };
    struct Journey
    {
        QDeadlineTimer deadline;
        int redirects = 0;
    };
    void enqueue(Call call);
    void startNext();
    void start(const HttpRequest &request, const Done &done, const Journey &journey);
    QNetworkReply *request(const HttpRequest &request);

    HttpLimits m_limits;
    QNetworkAccessManager m_network;
    QTimer m_turn;
    std::deque<Call> m_waiting;
    int m_underWay = 0;
};

} // namespace znt

#include "net/sessions.h"

#include "net/networkmanager.h"
#include "support/mainthread.h"

#include <QHostInfo>
#include <QSslSocket>
#include <QThread>

#include <array>

namespace znt {

namespace {

using namespace std::chrono_literals;

// What Qt makes at the first request, and the clients would then outlive at exit().
void loadNetwork()
{
    QNetworkAccessManager();
    QHostInfo::abortHostLookup(-1);
    QSslSocket::supportsSsl();
}

// How long the application's end waits for the thread, which waits for nobody itself, and then for
// the connections that a server may hold.
constexpr auto threadEndPatience = 250ms;

class Sessions
{
public:
    Sessions()
    {
        loadNetwork();
        for (HttpClient *client : m_clients) {
            client->moveToThread(m_thread);
            QObject::connect(m_thread, &QThread::finished, client, &QObject::deleteLater);
        }
        m_thread->setObjectName(QStringLiteral("com.zntads.network"));
        m_thread->start();
    }
    ~Sessions()
    {
        m_thread->quit();
        if (!m_thread->wait(QDeadlineTimer(threadEndPatience)))
            return; // a thread that runs must not be destroyed
        delete m_thread;
        waitForDiscardedManagers(threadEndPatience);
    }
    Q_DISABLE_COPY_MOVE(Sessions)

    HttpClient *client(Session session) const { return m_clients[size_t(session)]; }

private:
    QThread *const m_thread = new QThread;
    const std::array<HttpClient *, 4> m_clients{
        new HttpClient({.onFreshConnection = true}),
        new HttpClient(
            {.inactivity = 60s, .total = 60s, .bytes = 1024 * 1024, .discardBody = true}),
        new HttpClient(
            {.inactivity = 60s, .total = 60s, .bytes = 1024 * 1024, .discardBody = true}),
        new HttpClient(
            {.inactivity = 30s, .total = 120s, .bytes = 32 * 1024 * 1024, .mayResend = true}),
    };
};

// `done`, used and destroyed on the main thread.
HttpClient::Done backOnMainThread(HttpClient::Done done)
{
    const std::shared_ptr<HttpClient::Done> kept(
        new HttpClient::Done(std::move(done)), [](HttpClient::Done *last) {
            std::unique_ptr<HttpClient::Done> owned(last);
            if (!isMainThread())
                onMainThread([owned = std::shared_ptr(std::move(owned))] {});
        });
    return [kept](const HttpAnswer &answer) { onMainThread([kept, answer] { (*kept)(answer); }); };
}

void send(Session session, const HttpRequest &request, HttpClient::Done done)
{
    if (Sessions *sessions = ofApplication<Sessions>())
        sessions->client(session)->send(request,
            session == Session::Images ? std::move(done) : backOnMainThread(std::move(done)));
}

} // namespace

void sendHttp(Session session, const HttpRequest &request, HttpClient::Done done)
{
    // Until its event loop runs, a host may still be setting certificates and proxies.
    if (isMainThread() && QThread::currentThread()->loopLevel() > 0) {
        send(session, request, std::move(done));
        return;
    }
    onMainThread([session, request, done = std::move(done)] { send(session, request, done); });
}

} // namespace znt

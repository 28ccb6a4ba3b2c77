#include "net/sessions.h"

#include "support/mainthread.h"

#include <QHostInfo>
#include <QSslSocket>
#include <QThread>

namespace znt {

namespace {

HttpLimits limitsOf(Session session)
{
    using namespace std::chrono_literals;
    switch (session) {
    case Session::Shared:
    case Session::Reports:
        return {.inactivity = 60s, .total = 60s, .bytes = 1024 * 1024, .discardBody = true};
    case Session::Images:
        return {.inactivity = 30s, .total = 120s, .bytes = 32 * 1024 * 1024, .mayResend = true};
    case Session::Exchange:
        break;
    }
    return {.onFreshConnection = true};
}

// What Qt makes at the first request, and the clients would then outlive at exit().
void loadNetwork()
{
    QNetworkAccessManager();
    QHostInfo::abortHostLookup(-1);
    QSslSocket::supportsSsl();
}

class Sessions
{
public:
    Sessions()
        : m_exchange(limitsOf(Session::Exchange))
        , m_shared(limitsOf(Session::Shared))
        , m_reports(limitsOf(Session::Reports))
        , m_images(new HttpClient(limitsOf(Session::Images)))
    {
        loadNetwork();
        QThread *const mainThread = QCoreApplication::instance()->thread();
        m_exchange.moveToThread(mainThread);
        m_shared.moveToThread(mainThread);
        m_reports.moveToThread(mainThread);
        m_images->moveToThread(&m_imageThread);
        m_imageThread.setObjectName(QStringLiteral("com.zntads.images"));
        QObject::connect(&m_imageThread, &QThread::finished, m_images, &QObject::deleteLater);
        m_imageThread.start();
    }
    ~Sessions()
    {
        m_imageThread.quit();
        m_imageThread.wait();
    }
    Q_DISABLE_COPY_MOVE(Sessions)

    HttpClient *client(Session session)
    {
        switch (session) {
        case Session::Exchange:
            return &m_exchange;
        case Session::Shared:
            return &m_shared;
        case Session::Reports:
            return &m_reports;
        case Session::Images:
            break;
        }
        return m_images;
    }

private:
    HttpClient m_exchange;
    HttpClient m_shared;
    HttpClient m_reports;
    HttpClient *m_images;
    QThread m_imageThread;
};

} // namespace

void sendHttp(Session session, const HttpRequest &request, HttpClient::Done done)
{
    onMainThread([session, request, done = std::move(done)] {
        if (Sessions *sessions = ofApplication<Sessions>())
            sessions->client(session)->send(request, done);
    });
}

} // namespace znt

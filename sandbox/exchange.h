// The ad exchange of the sandbox: a real server with real TLS, as a program of its own
// (zntads-exchange) or inside a test:
//
//     sandbox::Exchange exchange;
//     QVERIFY2(exchange.start(), qPrintable(exchange.errorString()));
//     sandbox::trust(exchange.ca());
//     exchange.setAnswer("my-position", R"({"code": 200, "data": []})");
//     …
//     QVERIFY(exchange.waitForRequests("/s/req2.do", 1));
//     QVERIFY(*exchange.requests("/s/req2.do").first().signatureOk);
#pragma once

#include "answer.h"
#include "authority.h"

#include <QHash>
#include <QObject>
#include <QUrl>

#include <memory>

QT_FORWARD_DECLARE_CLASS(QTcpServer)
QT_FORWARD_DECLARE_CLASS(QTemporaryDir)

namespace sandbox {

/// Serves the ad, configuration and feedback endpoints over https and the log endpoint over http,
/// on the loopback address alone; creatives, tracking URLs and a landing page over both. Lives in
/// the thread that made it, and answers only while that thread's event loop runs.
class Exchange : public QObject
{
    Q_OBJECT

public:
    explicit Exchange(QObject *parent = nullptr);
    ~Exchange() override;

    /// What the signatures are checked with; "demo-secret" unless told.
    void setSecret(const QString &secret);
    /// Where the certificates are kept from one start to the next. Without it the exchange makes
    /// its own in a temporary folder, which takes a millisecond or two.
    void setStateDir(const QString &dir);
    /// A folder of answers (NAME.json, asked for as position NAME) and of files (/creatives/FILE)
    /// that come before the built-in ones. `${BASE}` in an answer becomes httpsUrl().
    void setCreativesDir(const QString &dir);

    /// Port 0 takes any free one. False when the certificates or a port cannot be had.
    bool start(quint16 httpsPort = 0, quint16 httpPort = 0);
    QString errorString() const { return m_error; }

    /// "https://localhost:PORT" and "http://localhost:PORT", once started.
    QUrl httpsUrl() const { return m_httpsUrl; }
    QUrl httpUrl() const { return m_httpUrl; }
    /// The https address of a path, which begins with a slash.
    QUrl url(const QString &path) const { return QUrl(m_httpsUrl.toString() + path); }
    /// The authority that a client has to trust, and the PEM file that holds it.
    QSslCertificate ca() const { return m_credentials.ca; }
    QString caFile() const { return m_credentials.caFile; }

    /// Answers a position with this from now on; `${BASE}` in the body is replaced, as in a file.
    void setAnswer(const QString &position, const QByteArray &body);
    void setAnswer(const QString &position, const QJsonObject &object);
    void setAnswer(const QString &position, const Answer &answer);
    /// Answers a position as the built-in one of that name; false when there is none.
    bool answerLike(const QString &position, const QString &builtIn);
    /// Answers everything that comes to this path, endpoints and creatives included.
    void setAnswerAt(const QString &path, const Answer &answer);
    /// What a position would be answered now, as JSON: a start for a test's own variation.
    QJsonObject answer(const QString &position) const;

    /// What has come so far, in order: all of it, or to one path (without its query).
    QList<Request> requests(const QString &path = {}) const;
    int hits(const QString &path) const { return m_hits.value(path); }
    /// Runs the event loop until that many requests have come to the path; false after the time.
    bool waitForRequests(const QString &path, int count, int milliseconds = 5000);
    /// Drops the requests kept so far, and their hits unless these are wanted further.
    void forgetRequests(bool keepHits = false);
    /// Forgets the requests, and answers as at first, with the secret and the files of then.
    void reset();

signals:
    /// A request has come; it is answered right after.
    void requestReceived(const sandbox::Request &request);

private:
    bool listen(QTcpServer *server, quint16 port, QUrl *url);
    Answer handle(Request request);
    Answer route(const Request &request) const;
    Answer endpoint(const Request &request) const;
    Answer positionAnswer(const QString &position) const;
    Answer file(const Request &request) const;
    bool isSignedRight(const Request &request) const;

    QString m_secret;
    QString m_stateDir;
    QString m_creativesDir;
    QString m_error;
    QUrl m_httpsUrl;
    QUrl m_httpUrl;
    Credentials m_credentials;
    std::unique_ptr<QTemporaryDir> m_temporaryState;
    QHash<QString, Answer> m_answers; // by position
    QHash<QString, Answer> m_pathAnswers;
    QList<Request> m_requests;
    QHash<QString, int> m_hits;
};

/// Makes every https connection that this process opens from now on, and that sets no
/// configuration of its own, trust this authority, and none of the system's.
void trust(const QSslCertificate &ca);

} // namespace sandbox

#pragma once

#include <ZNTAdsTesting/ZNTExpect.h>

#include <QJsonObject>
#include <QObject>
#include <QUrl>

#include <memory>

/// An ad exchange in the test's own process: a real server with real TLS on a free port of the
/// loopback address, which answers, keeps what has come, and tells whether that is what a test
/// expects.
///
/// Make the first one before the application registers: it points the library to its address and
/// has the process trust its authority. The server then stays for as long as the process does, at
/// the same address, so that each test function may have an exchange of its own; a new one begins
/// with the built-in answers and has got nothing yet. One at a time: a second one ends the test
/// with a message. It answers while the event loop runs. Main thread.
/// @code
/// ZNTTestExchange exchange;
/// exchange.changeAd("my-position", "splash", {{"adId", "mine"}});
/// myApplication.start();
/// ZNT_EXPECT(exchange.isAsked("my-position"));
/// ZNT_EXPECT(exchange.tracks(ZNTTestExchange::View, "mine"));
/// @endcode
/// An expectation that is not met yet is waited for, timeout() milliseconds of real time at most.
class ZNTTestExchange : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QUrl httpsUrl READ httpsUrl CONSTANT)
    Q_PROPERTY(QUrl httpUrl READ httpUrl CONSTANT)
    Q_PROPERTY(QString secret READ secret WRITE setSecret NOTIFY secretChanged)
    Q_PROPERTY(int timeout READ timeout WRITE setTimeout NOTIFY timeoutChanged)

public:
    /// What the trackers of an ad are fired for.
    enum Tracking {
        View,     ///< the ad was seen
        Click,    ///< it was clicked
        DeepLink, ///< its deep link was opened
    };
    Q_ENUM(Tracking)

    /// Starts the server, if it has not been started; a failure ends the test with a message.
    explicit ZNTTestExchange(QObject *parent = nullptr);
    /// The server answers on, for late requests, with what is built in.
    ~ZNTTestExchange() override;

    /// The bases of the endpoints, of creatives and of trackers.
    QUrl httpsUrl() const;
    /// The base of the log endpoint.
    QUrl httpUrl() const;
    /// What requests have to be signed with; "demo-secret" unless set. Others are refused.
    QString secret() const;
    void setSecret(const QString &secret);
    /// How long an expectation is waited for, in milliseconds of real time; 5000 unless set.
    int timeout() const;
    void setTimeout(int milliseconds);

    /// The positions that are answered by what is built in.
    Q_INVOKABLE static QStringList builtInPositions();
    /// What the position would be answered now, of which a test may change what it likes. Built in
    /// are "splash", "interstitial", "feed" with an ad for each of the nine templates, a position
    /// for each template's code such as "XCT", and the faults, such as "slow", "dropped",
    /// "refused", "not-json" or "broken-image"; the README of the sandbox lists them all. Of a
    /// fault that is no JSON it is empty.
    Q_INVOKABLE QJsonObject answer(const QString &position) const;
    /// One ad of that answer; empty when it has none at @p index.
    Q_INVOKABLE QJsonObject ad(const QString &position, int index = 0) const;
    /// Answers @p position with the object, or with any bytes, from now on. `${BASE}` in it stands
    /// for httpsUrl().
    Q_INVOKABLE void setAnswer(const QString &position, const QJsonObject &answer);
    void setAnswer(const QString &position, const QByteArray &body);
    /// Answers @p position as one that is built in, a fault for instance.
    Q_INVOKABLE void answerLike(const QString &position, const QString &builtIn);
    /// Answers @p position with the first ad of @p builtIn, with @p changes in place of its own
    /// values: `changeAd("mine", "XCT", {{"adId", "7"}, {"sourceName", "Tea"}})`.
    Q_INVOKABLE void changeAd(
        const QString &position, const QString &builtIn, const QJsonObject &changes);
    /// Answers requests for the configuration with the object from now on.
    Q_INVOKABLE void setConfiguration(const QJsonObject &configuration);
    /// Serves the files of a folder at httpsUrl() + "/creatives/FILE", before those that are built
    /// in, and its NAME.json as the answers of positions; none while it is empty.
    void setFolder(const QString &folder);
    /// Serves a file of the test's own, a picture for instance, at httpsUrl() + @p path, which
    /// begins with a slash.
    void setFile(const QString &path, const QByteArray &data, const QByteArray &contentType);

    /// How many requests have come for an ad at @p position, or at any when it is empty.
    Q_INVOKABLE int askedFor(const QString &position = {}) const;
    /// The bodies of these requests, in order.
    Q_INVOKABLE QList<QJsonObject> adRequests(const QString &position = {}) const;
    /// How many requests have come to a path, a tracker of the test's own for instance.
    Q_INVOKABLE int hits(const QString &path) const;
    /// The error reports that have come, in order.
    Q_INVOKABLE QList<QJsonObject> errorReports() const;

    /// That an ad is requested at @p position that many times, each request rightly signed.
    Q_INVOKABLE QString isAsked(const QString &position, int times = 1) const;
    /// That no ad has been requested anywhere, for instance before the user's consent, and that
    /// none comes within @p milliseconds of real time.
    Q_INVOKABLE QString isNotAsked(int milliseconds = 100) const;
    /// That each tracker of the kind is fired that many times. The ad is one of those that answers
    /// of this exchange hold; 0 times looks on for 50 ms.
    Q_INVOKABLE QString tracks(
        ZNTTestExchange::Tracking kind, const QString &adId, int times = 1) const;
    /// That negative feedback about the ad comes, once.
    Q_INVOKABLE QString getsFeedback(const QString &adId) const;
    /// That an error report comes which holds @p text in its summary or details.
    Q_INVOKABLE QString getsErrorReport(const QString &text) const;

Q_SIGNALS:
    void secretChanged();
    void timeoutChanged();

private:
    class Private;
    const std::unique_ptr<Private> d;
};

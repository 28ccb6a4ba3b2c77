#include <ZNTAdsTesting/ZNTTestExchange.h>

#include "expectation.h"

#include "sandbox/builtinanswers.h"
#include "sandbox/exchange.h"

#include <ZNTAds/ZNTAdsSDK.h>

#include <QCoreApplication>
#include <QJsonArray>
#include <QSet>

#include <algorithm>

namespace {

using Request = sandbox::Request;

const QString adPath = QStringLiteral("/s/req2.do");
const QString configurationPath = QStringLiteral("/conf.do");
const QString feedbackPath = QStringLiteral("/s/negfb.do");
const QString reportPath = QStringLiteral("/logs.do");

ZNTTestExchange *current = nullptr;
std::unique_ptr<sandbox::Exchange> server;

// For as long as the application lives, which registers once.
sandbox::Exchange *startedServer()
{
    if (server)
        return server.get();
    if (!QCoreApplication::instance())
        qFatal("ZNTTestExchange: there is no application object yet");
    server = std::make_unique<sandbox::Exchange>();
    if (!server->start())
        qFatal("ZNTTestExchange: %s", qPrintable(server->errorString()));
    qAddPostRoutine([] { server.reset(); });
    sandbox::trust(server->ca());
    if (!ZNTAdsSDK::setEndpoints(server->httpsUrl(), server->httpUrl()))
        qFatal("ZNTTestExchange: make it before the application registers");
    return server.get();
}

QJsonArray adsOf(const QJsonObject &answer)
{
    return answer.value(u"data").toArray();
}

QJsonArray trackersOf(const QJsonObject &ad, ZNTTestExchange::Tracking kind)
{
    const QJsonObject lists = ad.value(u"trackInfo").toObject();
    switch (kind) {
    case ZNTTestExchange::Click:
        return lists.value(u"clickUrl3rd").toArray();
    case ZNTTestExchange::DeepLink:
        return lists.value(u"dpEventUrls").toArray();
    case ZNTTestExchange::View:
        break;
    }
    return lists.value(u"viewUrl3rd").toArray();
}

// With each character escaped as Qt sends it.
QString sentPath(const QString &url)
{
    return QUrl(url).path(QUrl::FullyEncoded);
}

const char *nameOf(ZNTTestExchange::Tracking kind)
{
    switch (kind) {
    case ZNTTestExchange::Click:
        return "click";
    case ZNTTestExchange::DeepLink:
        return "deep-link";
    case ZNTTestExchange::View:
        break;
    }
    return "view";
}

} // namespace

class ZNTTestExchange::Private
{
public:
    // Of an answer that a test has read or set, or that was sent.
    QJsonObject keep(const QString &position)
    {
        const QJsonObject answer = exchange->answer(position);
        for (const auto all = adsOf(answer); const QJsonValue &ad : all)
            ads.insert(ad[u"adId"].toString(), ad.toObject());
        return answer;
    }
    QJsonObject ad(const QString &id);
    QString summary() const;
    QList<QJsonObject> bodies(const QString &path) const;

    sandbox::Exchange *const exchange = startedServer();
    QString secret = QStringLiteral("demo-secret");
    int timeout = 5000;
    QHash<QString, QJsonObject> ads; // of the answers that were given, by id
};

QJsonObject ZNTTestExchange::Private::ad(const QString &id)
{
    QSet<QString> positions;
    for (const auto requests = exchange->requests(adPath); const Request &request : requests)
        positions.insert(request.position);
    if (!ads.contains(id))
        std::for_each(positions.begin(), positions.end(), [this](auto &each) { keep(each); });
    return ads.value(id);
}

// What has come, for the messages.
QString ZNTTestExchange::Private::summary() const
{
    QStringList paths;
    for (const auto requests = exchange->requests(); const Request &request : requests) {
        const bool isAd = request.path == adPath;
        const QString path =
            isAd ? QStringLiteral("an ad request at \"%1\"").arg(request.position) : request.path;
        const bool isRefused = request.signatureOk && !*request.signatureOk;
        paths.append(isRefused ? path + " (wrong signature)" : path);
    }
    constexpr qsizetype shown = 20;
    const qsizetype more = paths.size() - shown;
    if (more > 0)
        paths = paths.mid(more);
    const QString came = paths.isEmpty() ? QStringLiteral("nothing") : paths.join(", ");
    return (more > 0 ? QStringLiteral("%1 more, then ").arg(more) : QString()) + came
        + znt::testing::clockNote();
}

QList<QJsonObject> ZNTTestExchange::Private::bodies(const QString &path) const
{
    QList<QJsonObject> bodies;
    for (const auto requests = exchange->requests(path); const Request &request : requests)
        bodies.append(request.json());
    return bodies;
}

ZNTTestExchange::ZNTTestExchange(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>())
{
    if (current)
        qFatal("ZNTTestExchange: there is one already in this process");
    current = this;
    d->exchange->reset();
}

// What is on its way is not to be taken for the next one's.
ZNTTestExchange::~ZNTTestExchange()
{
    current = nullptr;
    if (!server)
        return;
    for (qsizetype count = -1; count != server->requests().size(); znt::testing::settle())
        count = server->requests().size();
    server->reset();
}

QUrl ZNTTestExchange::httpsUrl() const
{
    return d->exchange->httpsUrl();
}

QUrl ZNTTestExchange::httpUrl() const
{
    return d->exchange->httpUrl();
}

QString ZNTTestExchange::secret() const
{
    return d->secret;
}

void ZNTTestExchange::setSecret(const QString &secret)
{
    if (std::exchange(d->secret, secret) == secret)
        return;
    d->exchange->setSecret(secret);
    Q_EMIT secretChanged();
}

int ZNTTestExchange::timeout() const
{
    return d->timeout;
}

void ZNTTestExchange::setTimeout(int milliseconds)
{
    milliseconds = std::max(milliseconds, 0);
    if (std::exchange(d->timeout, milliseconds) != milliseconds)
        Q_EMIT timeoutChanged();
}

QStringList ZNTTestExchange::builtInPositions()
{
    return sandbox::builtInPositions();
}

QJsonObject ZNTTestExchange::answer(const QString &position) const
{
    return d->keep(position);
}

QJsonObject ZNTTestExchange::ad(const QString &position, int index) const
{
    return adsOf(answer(position)).at(index).toObject();
}

void ZNTTestExchange::setAnswer(const QString &position, const QJsonObject &answer)
{
    d->exchange->setAnswer(position, answer);
    d->keep(position);
}

void ZNTTestExchange::setAnswer(const QString &position, const QByteArray &body)
{
    d->exchange->setAnswer(position, body);
    d->keep(position);
}

void ZNTTestExchange::answerLike(const QString &position, const QString &builtIn)
{
    if (!d->exchange->answerLike(position, builtIn))
        qWarning("ZNTTestExchange: no answer \"%s\" is built in", qPrintable(builtIn));
}

void ZNTTestExchange::changeAd(
    const QString &position, const QString &builtIn, const QJsonObject &changes)
{
    QJsonObject answer = d->exchange->answer(builtIn);
    QJsonObject changed = adsOf(answer).at(0).toObject();
    if (changed.isEmpty())
        qWarning("ZNTTestExchange: there is no ad in the answer \"%s\"", qPrintable(builtIn));
    for (auto it = changes.begin(); it != changes.end(); ++it)
        changed.insert(it.key(), it.value());
    answer.insert(QStringLiteral("data"), QJsonArray{changed});
    setAnswer(position, answer);
}

void ZNTTestExchange::setConfiguration(const QJsonObject &configuration)
{
    d->exchange->setAnswerAt(configurationPath, sandbox::jsonAnswer(configuration));
}

void ZNTTestExchange::setFolder(const QString &folder)
{
    d->exchange->setCreativesDir(folder);
}

void ZNTTestExchange::setFile(
    const QString &path, const QByteArray &data, const QByteArray &contentType)
{
    d->exchange->setAnswerAt(path, {.body = data, .contentType = contentType});
}

int ZNTTestExchange::askedFor(const QString &position) const
{
    return int(adRequests(position).size());
}

QList<QJsonObject> ZNTTestExchange::adRequests(const QString &position) const
{
    QList<QJsonObject> bodies;
    for (const auto requests = d->exchange->requests(adPath); const Request &request : requests) {
        if (position.isEmpty() || request.position == position)
            bodies.append(request.json());
    }
    return bodies;
}

int ZNTTestExchange::hits(const QString &path) const
{
    return d->exchange->hits(path);
}

QList<QJsonObject> ZNTTestExchange::errorReports() const
{
    return d->bodies(reportPath);
}

QString ZNTTestExchange::isAsked(const QString &position, int times) const
{
    znt::testing::waitFor([&] { return askedFor(position) >= times; }, d->timeout);
    const QList<Request> requests = d->exchange->requests(adPath);
    const bool isSigned = std::all_of(
        requests.begin(), requests.end(), [](const Request &one) { return *one.signatureOk; });
    if (askedFor(position) == times && isSigned)
        return {};
    return QStringLiteral("expected %1 signed ad requests at \"%2\"; came: %3")
        .arg(times)
        .arg(position, d->summary());
}

QString ZNTTestExchange::isNotAsked(int milliseconds) const
{
    if (!znt::testing::waitFor([this] { return askedFor() > 0; }, milliseconds))
        return {};
    return QStringLiteral("expected no ad request; came: %1").arg(d->summary());
}

QString ZNTTestExchange::tracks(Tracking kind, const QString &adId, int times) const
{
    const QJsonArray trackers = trackersOf(d->ad(adId), kind);
    if (trackers.isEmpty())
        return QStringLiteral("no answer of this exchange holds %1 trackers of an ad \"%2\"")
            .arg(QLatin1String(nameOf(kind)), adId);
    const auto firedAtLeast = [&] {
        return std::all_of(trackers.begin(), trackers.end(),
            [&](const QJsonValue &url) { return hits(sentPath(url.toString())) >= times; });
    };
    znt::testing::waitFor(firedAtLeast, d->timeout);
    znt::testing::settle();
    QStringList off;
    for (const QJsonValue &url : trackers) {
        const QString path = sentPath(url.toString());
        if (hits(path) != times)
            off.append(QStringLiteral("%1 was fired %2 times").arg(path).arg(hits(path)));
    }
    if (off.isEmpty())
        return {};
    return QStringLiteral("expected each %1 tracker of \"%2\" %3 times, but %4%5")
        .arg(QLatin1String(nameOf(kind)), adId)
        .arg(times)
        .arg(off.join(", "), znt::testing::clockNote());
}

QString ZNTTestExchange::getsFeedback(const QString &adId) const
{
    const auto count = [&] {
        const QList<QJsonObject> bodies = d->bodies(feedbackPath);
        return std::count_if(bodies.begin(), bodies.end(),
            [&](const QJsonObject &body) { return body.value(u"bizId").toString() == adId; });
    };
    znt::testing::waitFor([&] { return count() > 0; }, d->timeout);
    znt::testing::settle();
    if (count() == 1)
        return {};
    return QStringLiteral("expected feedback about \"%1\" once; came: %2").arg(adId, d->summary());
}

QString ZNTTestExchange::getsErrorReport(const QString &text) const
{
    const auto hasCome = [&] {
        const QList<QJsonObject> reports = errorReports();
        return std::any_of(reports.begin(), reports.end(), [&](const QJsonObject &report) {
            return report.value(u"errorSummary").toString().contains(text)
                || report.value(u"errorDetails").toString().contains(text);
        });
    };
    if (znt::testing::waitFor(hasCome, d->timeout))
        return {};
    return QStringLiteral("expected an error report with \"%1\"; came: %2").arg(text, d->summary());
}

#include "exchange.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QStandardPaths>
#include <QThreadPool>

#include <cstdio>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

struct Options
{
    quint16 httpsPort = 0;
    quint16 httpPort = 0;
    QString secret;
    QString stateDir;
    QString creativesDir;
    QString logFile;
};

int fail(int status, QString message)
{
    message.replace(u'\n', u' '); // one line
    std::fprintf(stderr, "zntads-exchange: %s\n", qUtf8Printable(message));
    return status;
}

std::optional<quint16> port(const QString &text)
{
    bool ok = false;
    const quint16 number = text.toUShort(&ok);
    return ok ? std::optional(number) : std::nullopt;
}

// Nothing, and `error`, when the command line is off.
std::optional<Options> options(const QStringList &arguments, QString *error)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(u"The ad exchange of the sandbox."_s);
    const QString state = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
        + "/zntads-exchange"_L1;
    parser.addOptions({
        {u"https-port"_s, u"Port of the https endpoints (any free one)."_s, u"N"_s, u"0"_s},
        {u"http-port"_s, u"Port of the http endpoint (any free one)."_s, u"N"_s, u"0"_s},
        {u"secret"_s, u"What requests are signed with (demo-secret)."_s, u"S"_s, u"demo-secret"_s},
        {u"state-dir"_s, u"Where the certificates are kept (%1)."_s.arg(state), u"DIR"_s, state},
        {u"creatives"_s, u"Answers and files of your own."_s, u"DIR"_s},
        {u"log"_s, u"Writes the lines to FILE as well."_s, u"FILE"_s},
    });
    const auto help = parser.addHelpOption();
    if (!parser.parse(arguments)) {
        *error = parser.errorText();
        return {};
    }
    if (parser.isSet(help))
        parser.showHelp();
    const auto httpsPort = port(parser.value(u"https-port"_s));
    const auto httpPort = port(parser.value(u"http-port"_s));
    const QString creatives = parser.value(u"creatives"_s);
    if (!parser.positionalArguments().isEmpty())
        *error = u"unexpected argument '%1'"_s.arg(parser.positionalArguments().constFirst());
    else if (!httpsPort || !httpPort)
        *error = u"a port is a number from 0 to 65535"_s;
    else if (parser.isSet(u"creatives"_s) && !QFileInfo(creatives).isDir())
        *error = u"no such folder: '%1'"_s.arg(creatives);
    if (!error->isEmpty())
        return {};
    return Options{*httpsPort, *httpPort, parser.value(u"secret"_s), parser.value(u"state-dir"_s),
        creatives, parser.value(u"log"_s)};
}

QByteArray text(const QJsonValue &value)
{
    const QByteArray list = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return list.mid(1, list.size() - 2);
}

using Members = QList<QPair<QByteArray, QJsonValue>>;

// An object whose members keep their order.
QByteArray line(const Members &members, const char *separator, const char *colon)
{
    QByteArrayList parts;
    for (const auto &[name, value] : members)
        parts.append('"' + name + '"' + colon + text(value));
    return '{' + parts.join(separator) + "}\n";
}

QByteArray requestLine(const sandbox::Request &request, int count)
{
    QJsonObject headers;
    for (const auto &[name, value] : request.headers) {
        const QString key = QString::fromLatin1(name);
        const QString before = headers[key].toString();
        headers.insert(
            key, (before.isEmpty() ? before : before + ", "_L1) + QString::fromLatin1(value));
    }
    Members members{{"event", u"request"_s}, {"scheme", request.secure ? u"https"_s : u"http"_s},
        {"method", QString::fromLatin1(request.method)}, {"path", request.target},
        {"headers", headers}, {"body", QString::fromUtf8(request.body)}, {"count", count},
        {"time", QDateTime::currentMSecsSinceEpoch()}};
    if (request.signatureOk)
        members.append({"signatureOk", *request.signatureOk});
    if (!request.position.isNull())
        members.append({"position", request.position});
    return line(members, ",", ":");
}

// Standard output on a thread of its own: a reader that falls behind must not stop the exchange.
class Output
{
public:
    Output() { m_console.setMaxThreadCount(1); }

    bool logTo(const QString &fileName)
    {
        m_file.setFileName(fileName);
        return m_file.open(QIODevice::WriteOnly | QIODevice::Truncate);
    }

    void write(const QByteArray &line)
    {
        m_console.start([line] {
            std::fwrite(line.constData(), 1, size_t(line.size()), stdout);
            std::fflush(stdout);
        });
        if (m_file.isOpen()) {
            m_file.write(line);
            m_file.flush();
        }
    }

private:
    QThreadPool m_console;
    QFile m_file;
};

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(u"zntads-exchange"_s);
    QString error;
    const auto given = options(QCoreApplication::arguments(), &error);
    if (!given)
        return fail(2, error);
    Output output;
    if (!given->logFile.isEmpty() && !output.logTo(given->logFile))
        return fail(2, u"cannot write to '%1'"_s.arg(given->logFile));

    sandbox::Exchange exchange;
    exchange.setSecret(given->secret);
    exchange.setStateDir(given->stateDir);
    exchange.setCreativesDir(given->creativesDir);
    QObject::connect(&exchange, &sandbox::Exchange::requestReceived, &exchange,
        [&](const sandbox::Request &request) {
            output.write(requestLine(request, exchange.hits(request.path)));
            exchange.forgetRequests(true);
        });
    if (!exchange.start(given->httpsPort, given->httpPort))
        return fail(1, exchange.errorString());
    output.write(line({{"event", u"listening"_s}, {"https", exchange.httpsUrl().toString()},
                          {"http", exchange.httpUrl().toString()}, {"ca", exchange.caFile()}},
        ", ", ": "));
    return QCoreApplication::exec();
}

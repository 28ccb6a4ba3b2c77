#include "options.h"

#include "surroundings.h"

#include <QCommandLineParser>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <cmath>

namespace player {

namespace {

// Takes a value into the options; what is wrong with it otherwise.
using Reader = QString (*)(const QString &value, Options &options);

struct Definition
{
    const char *name;
    const char *valueName; // none: a switch
    const char *description;
    Reader read;
};

constexpr double largestSide = 16384;
constexpr int largestPreview = 2048;

QString expected(const char *what)
{
    return u"expected "_s + QString::fromUtf8(what);
}

QString readText(const QString &value, QString *text)
{
    // An empty value is a value; null would mean that there is none.
    *text = value.isNull() ? u""_s : value;
    return {};
}

QString readFilled(const QString &value, QString *text, const char *what)
{
    *text = value;
    return value.isEmpty() ? expected(what) : QString();
}

QString readInteger(const QString &value, qint64 *number)
{
    bool ok = false;
    *number = value.toLongLong(&ok);
    return ok ? QString() : expected("an integer");
}

template <class Number>
QString readNumber(const QString &value, Number *number)
{
    bool ok = false;
    *number = value.toDouble(&ok);
    return ok ? QString() : expected("a number");
}

template <class Seconds>
QString readSeconds(const QString &value, Seconds *seconds)
{
    bool ok = false;
    const double number = value.toDouble(&ok);
    *seconds = number;
    return ok && number >= 0 && number <= longestSeconds ? QString()
                                                         : expected("a number of seconds");
}

QString readSize(const QString &value, QSizeF *size)
{
    const QStringList sides = value.split(u'x');
    bool widthOk = false;
    bool heightOk = false;
    *size = QSizeF(sides.value(0).toDouble(&widthOk), sides.value(1).toDouble(&heightOk));
    const auto usable = [](double side) { return side > 0 && side <= largestSide; };
    return sides.size() == 2 && widthOk && heightOk && usable(size->width())
            && usable(size->height())
        ? QString()
        : expected("WxH in points");
}

QString readWindowSize(const QString &value, QSize *size)
{
    QSizeF exact;
    QString wrong = readSize(value, &exact);
    *size = exact.toSize();
    if (wrong.isEmpty() && QSizeF(*size) != exact)
        return expected("WxH in whole points");
    return wrong;
}

QString readSizes(const QString &value, QList<QSize> *sizes)
{
    sizes->clear();
    for (const QString &each : value.split(u',')) {
        QSize size;
        const QString wrong = readWindowSize(each, &size);
        if (!wrong.isEmpty() || size.width() > largestPreview || size.height() > largestPreview)
            return expected("WxH,… of at most 2048 points");
        sizes->append(size);
    }
    return {};
}

QString readScales(const QString &value, QList<double> *scales)
{
    scales->clear();
    for (const QString &each : value.split(u',')) {
        double scale = 0;
        const QString wrong = readNumber(each, &scale);
        if (!wrong.isEmpty() || !(scale >= 0.5 && scale <= 4))
            return expected("numbers from 0.5 to 4");
        scales->append(scale);
    }
    return {};
}

QString readSwitch(const QString &value, std::optional<bool> *on)
{
    *on = value == u"on"_s;
    return **on || value == u"off"_s ? QString() : expected("on or off");
}

QString readBase(const QString &value, const QString &scheme, QUrl *url)
{
    *url = QUrl(value);
    const bool usable = url->isValid() && url->scheme() == scheme && !url->host().isEmpty();
    return usable ? QString() : u"expected a URL of scheme %1"_s.arg(scheme);
}

QString readWhole(const QString &path, QByteArray *content)
{
    if (path.isEmpty())
        return expected("a file");
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return file.errorString();
    *content = file.readAll();
    return {};
}

QString readAuthorities(const QString &path, QList<QSslCertificate> *authorities)
{
    QByteArray pem;
    QString wrong = readWhole(path, &pem);
    if (!wrong.isEmpty())
        return wrong;
    *authorities = QSslCertificate::fromData(pem, QSsl::Pem);
    return authorities->isEmpty() ? u"holds no certificate"_s : QString();
}

QString readAnswer(const QString &path, std::optional<QJsonObject> *answer)
{
    QByteArray json;
    QString wrong = readWhole(path, &json);
    if (!wrong.isEmpty())
        return wrong;
    const QJsonDocument document = QJsonDocument::fromJson(json);
    *answer = document.object();
    return document.isObject() ? QString() : u"holds no JSON object"_s;
}

QString readDefault(const QString &value, QList<std::pair<QString, QVariant>> *defaults)
{
    const qsizetype equals = value.indexOf(u'=');
    // A document is an object or an array; as the one element of an array any value is read.
    const QJsonArray json =
        QJsonDocument::fromJson('[' + value.mid(equals + 1).toUtf8() + ']').array();
    if (equals < 1 || json.size() != 1)
        return expected("KEY=JSON");
    defaults->append({value.left(equals), json.at(0).toVariant()});
    return {};
}

QString readUrlOpening(const QString &value, std::optional<UrlOpening> *opening)
{
    static const QHash<QString, UrlOpening> values{
        {u"ok"_s, UrlOpening::Ok},
        {u"fail"_s, UrlOpening::Fail},
        {u"fail-deeplink"_s, UrlOpening::FailDeeplink},
        {u"desktop"_s, UrlOpening::Desktop},
    };
    if (!values.contains(value))
        return expected("ok, fail, fail-deeplink or desktop");
    *opening = values.value(value);
    return {};
}

QString readBottomView(const QString &value, std::optional<double> *height)
{
    const QString wrong = readNumber(value, height);
    return wrong.isEmpty() && (**height >= 0 && **height <= largestSide)
        ? QString()
        : expected("a height in points");
}

QString readAt(const QString &value, QList<Action> *actions)
{
    const auto action = readTimedAction(value);
    if (!action)
        return expected("T:ACTION");
    actions->append(*action);
    return {};
}

QString readVideo(const QString &value, QString *url)
{
    const QUrl parsed(value);
    return parsed.isValid() && !parsed.scheme().isEmpty() ? readText(value, url)
                                                          : expected("a URL");
}

// clang-format off
const Definition definitions[] = {
    {"exchange", "URL", "https base of the exchange endpoints (the compiled-in host)",
        [](const QString &v, Options &o) { return readBase(v, u"https"_s, &o.exchange); }},
    {"log-upload", "URL", "http base of the log endpoint (the compiled-in host)",
        [](const QString &v, Options &o) { return readBase(v, u"http"_s, &o.logUpload); }},
    {"ca-file", "FILE", "PEM file of extra trust anchors for every https connection",
        [](const QString &v, Options &o) { return readAuthorities(v, &o.authorities); }},
    {"app-id", "ID", "application id to register with (demo-app)",
        [](const QString &v, Options &o) { return readText(v, &o.appId); }},
    {"media-id", "ID", "media id to register with (demo-media)",
        [](const QString &v, Options &o) { return readText(v, &o.mediaId); }},
    {"secret", "S", "secret to register with (demo-secret)",
        [](const QString &v, Options &o) { return readText(v, &o.secret); }},
    {"set-default", "KEY=JSON", "store a value in the user defaults first; repeatable",
        [](const QString &v, Options &o) { return readDefault(v, &o.defaults); }},
    {"answer", "FILE", "no request: hand the JSON object in FILE to the manager",
        [](const QString &v, Options &o) { o.answerFile = v; return readAnswer(v, &o.answer); }},
    {"no-register", nullptr, "do not register",
        [](const QString &, Options &o) { o.registers = false; return QString(); }},
    {"position", "ID", "position id of the request (the format's name)",
        [](const QString &v, Options &o) { o.position.emplace(); return readText(v, &*o.position); }},
    {"no-position", nullptr, "leave the position id unset",
        [](const QString &, Options &o) { o.hasPosition = false; return QString(); }},
    {"test-mode", "on|off", "test mode, set before registration (not touched)",
        [](const QString &v, Options &o) { return readSwitch(v, &o.testMode); }},
    {"log", "on|off", "logging, set before registration (not touched)",
        [](const QString &v, Options &o) { return readSwitch(v, &o.log); }},
    {"exposure-ratio", "P", "share in percent from which an ad counts as seen (not set)",
        [](const QString &v, Options &o) { return readNumber(v, &o.exposureRatio); }},
    {"size", "WxH", "window size in points (375x812)",
        [](const QString &v, Options &o) { return readWindowSize(v, &o.size); }},
    {"data-dir", "DIR", "keep everything that the run stores under DIR",
        [](const QString &v, Options &o) { return readFilled(v, &o.dataDir, "a folder"); }},
    {"open-url", "HOW", "ok, fail, fail-deeplink or desktop (desktop in a window, ok off screen)",
        [](const QString &v, Options &o) { return readUrlOpening(v, &o.urlOpening); }},
    {"events", "FILE", "where the event lines go (-, standard output)",
        [](const QString &v, Options &o) { return readFilled(v, &o.events, "a file"); }},
    {"duration", "S", "exit after S seconds at the latest (60)",
        [](const QString &v, Options &o) { return readSeconds(v, &o.duration); }},
    {"style", "N", "splash: 1 shake, 2 slide, anything else the plain picture (0)",
        [](const QString &v, Options &o) { return readInteger(v, &o.style); }},
    {"video", "URL", "splash: no request, show the video at URL",
        [](const QString &v, Options &o) { return readVideo(v, &o.video); }},
    {"bottom-view", "H", "splash: a bottom view H points high (none)",
        [](const QString &v, Options &o) { return readBottomView(v, &o.bottomView); }},
    {"no-show", nullptr, "load only",
        [](const QString &, Options &o) { o.shows = false; return QString(); }},
    {"auto-close", "S", "interstitial: seconds until it closes by itself (0, never)",
        [](const QString &v, Options &o) { return readNumber(v, &o.autoClose); }},
    {"count", "N", "feed: how many ads are kept at most (9)",
        [](const QString &v, Options &o) { return readInteger(v, &o.count); }},
    {"template-size", "WxH", "feed: size of each row's view in points (375x200)",
        [](const QString &v, Options &o) { return readSize(v, &o.templateSize); }},
    {"linger", "S", "seconds that the run goes on after its end (2)",
        [](const QString &v, Options &o) { return readSeconds(v, &o.linger); }},
    {"screenshots", "DIR", "tour: where its pictures go (screenshots)",
        [](const QString &v, Options &o) { return readFilled(v, &o.screenshots, "a folder"); }},
    {"sizes", "WxH,…", "preview: sizes of the screen in points (320x568,375x812,812x375)",
        [](const QString &v, Options &o) { return readSizes(v, &o.sizes); }},
    {"scales", "S,…", "preview: pixels a point (1)",
        [](const QString &v, Options &o) { return readScales(v, &o.scales); }},
    {"out", "FILE", "preview: the sheet, a PNG file; the page goes beside it as HTML",
        [](const QString &v, Options &o) { return readFilled(v, &o.out, "a file"); }},
    {"at", "T:ACTION", "run ACTION T seconds after the show call returned; repeatable",
        [](const QString &v, Options &o) { return readAt(v, &o.actions); }},
};
// clang-format on

const char helpAfterOptions[] = R"(
Actions:
  tap[:NAME][:ROW]    press and release at the centre of the ad or of an item in it
  pan:DX,DY,MS        press at the ad's centre, move evenly, release
  tilt:DEG  shake     motion
  close               the host's own closing
  hide  show  alpha:V  move:DX,DY
                      the host's screen item, an ancestor of the ad
  scroll:Y            feed: scroll the list to Y points
  screenshot:FILE     the window as PNG
  dump:FILE           the window's items as JSON
  defaults:FILE       the stored ZNTAds_ keys as JSON
  quit                end with status 0
)";

void define(QCommandLineParser *parser)
{
    parser->setApplicationDescription(
        u"Registers, loads one ad format, shows it and prints what happens."_s);
    parser->addPositionalArgument(
        u"format"_s, QString(), u"splash|interstitial|feed|tour|studio|preview"_s);
    parser->addOption({{u"h"_s, u"help"_s}, u"this help"_s});
    for (const Definition &definition : definitions) {
        parser->addOption({QString::fromLatin1(definition.name),
            QString::fromUtf8(definition.description), QString::fromLatin1(definition.valueName)});
    }
}

QString readOptions(const QCommandLineParser &parser, Options *options)
{
    for (const Definition &definition : definitions) {
        const QString name = QString::fromLatin1(definition.name);
        if (!parser.isSet(name))
            continue;
        const QStringList values =
            definition.valueName ? parser.values(name) : QStringList{QString()};
        for (const QString &value : values) {
            const QString wrong = definition.read(value, *options);
            if (!wrong.isEmpty())
                return u"--%1 \"%2\": %3"_s.arg(name, value, wrong);
        }
    }
    return {};
}

QString readFormat(const QStringList &arguments, Format *format)
{
    static const QStringList names{
        u"splash"_s, u"interstitial"_s, u"feed"_s, u"tour"_s, u"studio"_s, u"preview"_s};
    if (arguments.isEmpty() && hasDisplay()) {
        *format = Format::Studio;
        return {};
    }
    const qsizetype index = arguments.size() == 1 ? names.indexOf(arguments.first()) : -1;
    *format = Format(qMax<qsizetype>(index, 0));
    return index < 0 ? u"expected one of splash, interstitial, feed, tour, studio, preview"_s
                     : QString();
}

QString contradiction(const Options &options)
{
    if (!options.video.isEmpty() && options.answer)
        return u"--video and --answer exclude each other"_s;
    if (options.format == Format::Preview && (!options.answer || options.out.isEmpty()))
        return u"preview needs --answer and --out"_s;
    if (!options.shows && (!options.video.isEmpty() || options.format >= Format::Tour))
        return u"--no-show needs something that can be loaded"_s;
    return {};
}

CommandLine wrongLine(const QString &message)
{
    return {CommandLine::Kind::Wrong, {}, message};
}

} // namespace

QString Options::formatName() const
{
    switch (format) {
    case Format::Splash:
        return u"splash"_s;
    case Format::Interstitial:
        return u"interstitial"_s;
    case Format::Feed:
        return u"feed"_s;
    case Format::Studio:
        return u"studio"_s;
    case Format::Preview:
        return u"preview"_s;
    case Format::Tour:
        break;
    }
    return u"tour"_s;
}

QString Options::positionId() const
{
    return hasPosition ? position.value_or(formatName()) : QString();
}

CommandLine readCommandLine(const QStringList &arguments)
{
    QCommandLineParser parser;
    define(&parser);
    const bool parsed = parser.parse(arguments);
    if (parser.isSet(u"help"_s)) {
        return {
            CommandLine::Kind::Help, {}, parser.helpText() + QString::fromLatin1(helpAfterOptions)};
    }
    if (!parsed)
        return wrongLine(parser.errorText());

    CommandLine line{CommandLine::Kind::Run, {}, {}};
    QString wrong = readFormat(parser.positionalArguments(), &line.options.format);
    if (wrong.isEmpty())
        wrong = readOptions(parser, &line.options);
    if (wrong.isEmpty())
        wrong = contradiction(line.options);
    return wrong.isEmpty() ? line : wrongLine(wrong);
}

} // namespace player

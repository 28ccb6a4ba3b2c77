#include "core/urlopener.h"

#include "core/linkrule.h"
#include "diagnostics/adtrace.h"
#include "support/mainthread.h"

#include <QDesktopServices>
#include <QGuiApplication>
#include <QProcess>
#include <QTimer>

namespace znt {

namespace {

using namespace std::chrono_literals;

constexpr auto openerPatience = 5s;

using Opened = std::function<void(bool opened)>;

struct Openers
{
    ZNTAdsSDK::UrlOpener url;
    ZNTAdsSDK::LinkOpener link;
};

// For a caller that may answer more than once.
Opened once(Opened done)
{
    return [pending = std::make_shared<Opened>(std::move(done))](bool opened) {
        if (const Opened first = std::exchange(*pending, {}))
            first(opened);
    };
}

#if QT_CONFIG(process)
bool isXdgDesktop()
{
    const QString platform = QGuiApplication::platformName();
    return platform == u"xcb" || platform.startsWith(u"wayland");
}

bool hasSucceeded(const QProcess *process)
{
    return process->error() == QProcess::UnknownError // none
        && process->exitStatus() == QProcess::NormalExit && process->exitCode() == 0;
}

// `ended` runs when the program has ended or could not be started. Without a parent, since a
// process that is destroyed while it runs is killed.
QProcess *run(const QString &program, const QStringList &arguments,
    const std::function<void(QProcess *)> &ended)
{
    auto *process = new QProcess;
    const auto end = [process, ended] {
        process->deleteLater();
        ended(process);
    };
    QObject::connect(process, &QProcess::finished, process, end);
    QObject::connect(process, &QProcess::errorOccurred, process, [end](auto error) {
        if (error == QProcess::FailedToStart)
            end();
    });
    process->start(program, arguments, QIODevice::ReadOnly);
    return process;
}

// Without xdg-mime the answer is yes: nothing speaks against it.
void askForHandler(const QString &scheme, const Opened &done)
{
    QProcess *query = run(QStringLiteral("xdg-mime"),
        {QStringLiteral("query"), QStringLiteral("default"),
            QStringLiteral("x-scheme-handler/") + scheme},
        [done](QProcess *ended) {
            done(ended->error() == QProcess::FailedToStart
                || (hasSucceeded(ended) && !ended->readAll().trimmed().isEmpty()));
        });
    QTimer::singleShot(openerPatience, query, &QProcess::kill);
}

// xdg-open ends at once, or, where there is no desktop around it, with the application.
void runXdgOpen(const QString &link, const Opened &done)
{
    const Opened first = once(done);
    QProcess *opener = run(QStringLiteral("xdg-open"), {link},
        [first](const QProcess *ended) { first(hasSucceeded(ended)); });
    QTimer::singleShot(openerPatience, opener, [first] { first(true); });
}

void openWithDesktop(const QString &link, const Opened &done)
{
    const QUrl url(link);
    if (url.toEncoded() == link.toUtf8())
        done(QDesktopServices::openUrl(url));
    else // QUrl would change the link
        runXdgOpen(link, done);
}

// Opening any link there succeeds when xdg-open has started, so ask whether it leads anywhere. The
// web always does: xdg-open looks for a browser in other ways, too.
void openWithXdg(const QString &link, const Opened &done)
{
    const QString scheme = schemeOf(link);
    if (scheme == u"http" || scheme == u"https") {
        openWithDesktop(link, done);
        return;
    }
    askForHandler(scheme, [link, done](bool hasHandler) {
        if (hasHandler)
            openWithDesktop(link, done);
        else
            done(false);
    });
}
#endif

} // namespace

void openLink(const QString &link, Opened handOver)
{
    const Opened done = [link, handOver = std::move(handOver)](bool opened) {
        ZNTAdTrace::note(opened ? ZNTAdTrace::LinkOpened : ZNTAdTrace::LinkRefused, nullptr, link);
        handOver(opened);
    };
    const Openers openers = neverDestroyed<Openers>(); // copies: one may put another in its place
    if (!mayBeOpened(link))
        done(false);
    else if (openers.link)
        openers.link(link, once(done));
    else if (openers.url)
        done(QUrl(link).isValid() && openers.url(QUrl(link)));
    else
        openLinkWithSystem(link, done);
}

void openLinkWithSystem(const QString &link, Opened done)
{
    if (!mayBeOpened(link)) {
        done(false);
        return;
    }
#if QT_CONFIG(process)
    if (isXdgDesktop()) {
        openWithXdg(link, done);
        return;
    }
#endif
    done(QDesktopServices::openUrl(QUrl(link)));
}

void setUrlOpener(ZNTAdsSDK::UrlOpener opener)
{
    neverDestroyed<Openers>().url = std::move(opener);
}

void setLinkOpener(ZNTAdsSDK::LinkOpener opener)
{
    neverDestroyed<Openers>().link = std::move(opener);
}

} // namespace znt

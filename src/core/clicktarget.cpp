#include "core/clicktarget.h"

#include "diagnostics/log.h"
#include "support/application.h"
#include "support/json.h"

#include <QDesktopServices>

namespace znt {

namespace {

std::function<bool(const QUrl &)> &urlOpener()
{
    static std::function<bool(const QUrl &)> opener;
    return opener;
}

// An ad leads out of the application, never to its files or resources, and runs nothing in it.
bool leadsOutside(const QUrl &url)
{
    static const QStringList closed{QStringLiteral("file"), QStringLiteral("qrc"),
        QStringLiteral("assets"), QStringLiteral("content"), QStringLiteral("data"),
        QStringLiteral("blob"), QStringLiteral("javascript"), QStringLiteral("about"),
        QStringLiteral("filesystem"), QStringLiteral("view-source")};
    // A scheme of one letter is a drive.
    return url.isValid() && url.scheme().size() > 1 && !closed.contains(url.scheme());
}

bool open(const QString &text)
{
    const QUrl url(text, QUrl::TolerantMode);
    if (!leadsOutside(url))
        return false;
    const auto opener = urlOpener(); // a copy: it may put another in its place
    return opener ? opener(url) : QDesktopServices::openUrl(url);
}

void openWebPage(const QString &webPage, const std::function<void()> &handedOver)
{
    onMainThread([webPage, handedOver] {
        open(webPage);
        handedOver();
    });
}

} // namespace

ClickTarget ClickTarget::of(const QJsonObject &ad)
{
    const QJsonObject urls = ad.value(u"urlInfo").toObject();
    return {json::string(urls.value(u"deepLinkUrl")), json::string(urls.value(u"h5url"))};
}

void openClickTarget(const ClickTarget &target, std::function<void()> handedOver)
{
    if (!target.deepLink.isEmpty()) {
        logInfo("Attempting to open deep link");
        onMainThread([target, handedOver] {
            if (open(target.deepLink) || target.webPage.isEmpty()) {
                handedOver();
                return;
            }
            logInfo("Deep link failed, falling back to H5 URL");
            openWebPage(target.webPage, handedOver);
        });
    } else if (!target.webPage.isEmpty()) {
        logInfo("Opening H5 URL directly");
        openWebPage(target.webPage, handedOver);
    }
}

void setUrlOpener(std::function<bool(const QUrl &)> opener)
{
    urlOpener() = std::move(opener);
}

} // namespace znt

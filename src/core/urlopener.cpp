#include "core/urlopener.h"

#include "support/mainthread.h"

#include <QDesktopServices>

namespace znt {

namespace {

using Opener = std::function<bool(const QUrl &)>;

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

} // namespace

bool openUrl(const QString &text)
{
    const QUrl url(text, QUrl::TolerantMode);
    if (!leadsOutside(url))
        return false;
    const Opener opener = neverDestroyed<Opener>(); // a copy: it may put another in its place
    return opener ? opener(url) : QDesktopServices::openUrl(url);
}

void setUrlOpener(std::function<bool(const QUrl &)> opener)
{
    neverDestroyed<Opener>() = std::move(opener);
}

} // namespace znt

// Addresses: where a click leads, and what is tracked.
#include "door.h"

#include "core/urlopener.h"

#include <ZNTAds/ZNTTrackInfo.h>

#include <QUrl>

void enter(const QByteArray &bytes)
{
    const QString link = QString::fromUtf8(bytes);
    ZNTTrackInfo::encryptPriceMacro({link, link + QLatin1String("${AUCTION_PRICE}")}, link);
    znt::setLinkOpener([](const QString &opened, const std::function<void(bool)> &done) {
        for (const char *scheme : {"file:", "javascript:", "data:", "qrc:", "content:"}) {
            if (opened.trimmed().startsWith(QLatin1String(scheme), Qt::CaseInsensitive))
                qFatal("opened: %s", qPrintable(opened));
        }
        done(true);
    });
    znt::openLink(link, [](bool) {});
}

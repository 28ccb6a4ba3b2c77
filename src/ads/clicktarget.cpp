#include "ads/clicktarget.h"

#include "core/urlopener.h"
#include "diagnostics/log.h"
#include "support/mainthread.h"

namespace znt {

namespace {

void openWebPage(const QString &webPage, const std::function<void()> &handedOver)
{
    onMainThread(
        [webPage, handedOver] { openLink(webPage, [handedOver](bool) { handedOver(); }); });
}

} // namespace

void openClickTarget(const ClickTarget &target, std::function<void()> handedOver)
{
    if (!target.deepLink.isEmpty()) {
        logInfo("Attempting to open deep link");
        onMainThread([target, handedOver] {
            openLink(target.deepLink, [target, handedOver](bool opened) {
                if (opened || target.webPage.isEmpty()) {
                    handedOver();
                    return;
                }
                logInfo("Deep link failed, falling back to H5 URL");
                openWebPage(target.webPage, handedOver);
            });
        });
    } else if (!target.webPage.isEmpty()) {
        logInfo("Opening H5 URL directly");
        openWebPage(target.webPage, handedOver);
    }
}

} // namespace znt

// Where a click leads: the deep link, else the web page, then a word to the host.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QJsonObject>
#include <QString>

#include <functional>

namespace znt {

struct ClickTarget
{
    QString deepLink;
    QString webPage;

    // Of an ad as the exchange sent it.
    static ClickTarget of(const QJsonObject &ad);
};

// Opens the deep link, or the web page when there is none or it cannot be opened. `handedOver` is
// called on a later turn of the event loop, when the system was asked for the last time; never when
// there is no target.
ZNTADS_INTERNAL void openClickTarget(const ClickTarget &target, std::function<void()> handedOver);

} // namespace znt

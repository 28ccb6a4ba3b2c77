#include "core/networkstatus.h"

#include "support/mainthread.h"

#include <QNetworkInformation>

namespace znt {

void followNetworkPath(std::function<void(bool isWiFi)> changed)
{
    // Loading the backend takes the system's services, so it waits for an event-loop iteration of
    // its own.
    onMainThread([changed = std::move(changed)] {
        using Info = QNetworkInformation;
        if (!Info::loadBackendByFeatures(
                Info::Feature::Reachability | Info::Feature::TransportMedium))
            return;
        endBeforeLoaded();
        Info *info = Info::instance();
        if (!info)
            return;
        const auto update = [info, changed] {
            const auto reach = info->reachability();
            const bool usable =
                reach != Info::Reachability::Unknown && reach != Info::Reachability::Disconnected;
            changed(usable && info->transportMedium() == Info::TransportMedium::WiFi);
        };
        QObject::connect(info, &Info::reachabilityChanged, info, update);
        QObject::connect(info, &Info::transportMediumChanged, info, update);
        update();
    });
}

} // namespace znt

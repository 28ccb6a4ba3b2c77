// The one ad that a manager has loaded.
#pragma once

#include "model/ad.h"
#include "model/trackinglists.h"

#include <functional>
#include <memory>

namespace znt {

// The ad, where a click on it leads, and what was reported about it. Main thread.
class ZNTADS_INTERNAL LoadedAd
{
public:
    LoadedAd() = default;
    ~LoadedAd();
    Q_DISABLE_COPY_MOVE(LoadedAd)

    // Tracking lists that the ad lacks stay as they were.
    void take(const Ad &ad);
    // The list of deep-link events stays, and that an exposure was reported.
    void forget();

    const std::optional<Ad> &ad() const { return m_ad; }
    // The ad as the exchange sent it.
    std::optional<QJsonObject> data() const;
    const TrackingLists &tracking() const { return m_tracking; }

    // Writes a line about it, too.
    ClickTarget clickTarget() const;

    // Negative feedback, when that id of the ad is there.
    void reportClose(QString Ad::*id) const;
    // `reported` runs when every request has been answered.
    void reportExposure(const std::function<void()> &reported);
    // Whether every request of an exposure has been answered; once true it stays true, whatever ad
    // is taken then.
    bool hasReportedExposure() const { return *m_hasReportedExposure; }

private:
    void drop();

    std::optional<Ad> m_ad;
    TrackingLists m_tracking;
    // The answers may come when the ad has gone.
    std::shared_ptr<bool> m_hasReportedExposure = std::make_shared<bool>(false);
};

} // namespace znt

// The one ad that a manager has loaded.
#pragma once

#include "ads/clicktarget.h"
#include "model/trackinglists.h"

#include <memory>
#include <optional>

namespace znt {

// The ad as the exchange sent it, where a click on it leads, and what is reported about it. Main
// thread.
class ZNTADS_INTERNAL LoadedAd
{
public:
    // Takes the first ad of an answer. False, and the log says why, when there is none. Tracking
    // lists that the ad lacks stay as they were.
    bool take(const QJsonValue &answer);
    // The list of deep-link events stays, and that an exposure was reported.
    void forget();

    const std::optional<QJsonObject> &data() const { return m_data; }
    const TrackingLists &tracking() const { return m_tracking; }

    // Writes a line about it, too.
    ClickTarget clickTarget() const;

    void reportExposure();
    // Whether every request of an exposure has been answered; once true it stays true, whatever ad
    // is taken then.
    bool hasReportedExposure() const { return *m_hasReportedExposure; }
    // The line that closes the click's requests, if there is to be one.
    void reportClick(const char *closing = nullptr) const;
    // Negative feedback, when the ad has an id under that key.
    void reportClose(const QString &idKey) const;

private:
    std::optional<QJsonObject> m_data;
    TrackingLists m_tracking;
    // The answers may come when the ad has gone.
    std::shared_ptr<bool> m_hasReportedExposure = std::make_shared<bool>(false);
};

} // namespace znt

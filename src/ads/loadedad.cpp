#include "ads/loadedad.h"

#include "ads/negativefeedback.h"
#include "ads/tracking.h"
#include "diagnostics/log.h"
#include "support/mainthread.h"

namespace znt {

LoadedAd::~LoadedAd()
{
    drop();
}

void LoadedAd::take(const Ad &ad)
{
    drop();
    m_ad = ad;
    readTrackingLists(m_tracking, ad.trackInfo, ClickForm::OfView,
        {.list = "Processed %1 dpEvent URLs", .single = "Converted single dpEvent URL to array"});
}

void LoadedAd::forget()
{
    drop();
    m_tracking.view = {};
    m_tracking.click = {};
}

void LoadedAd::drop()
{
    if (m_ad)
        discardInPool(*std::exchange(m_ad, {}));
}

std::optional<QJsonObject> LoadedAd::data() const
{
    return m_ad ? std::optional(m_ad->data) : std::nullopt;
}

ClickTarget LoadedAd::clickTarget() const
{
    const ClickTarget target = m_ad ? m_ad->target.value_or(ClickTarget()) : ClickTarget();
    logInfo("Click URLs - h5url: %1, deepLinkUrl: %2", target.webPage, target.deepLink);
    return target;
}

void LoadedAd::reportClose(QString Ad::*id) const
{
    if (m_ad && !((*m_ad).*id).isEmpty())
        sendNegativeFeedback((*m_ad).*id);
}

void LoadedAd::reportExposure(const std::function<void()> &reported)
{
    znt::reportExposure(m_tracking.view, [hasReported = m_hasReportedExposure, reported] {
        if (!std::exchange(*hasReported, true))
            reported();
    });
}

} // namespace znt

#include "ads/loadedad.h"

#include "ads/negativefeedback.h"
#include "ads/tracking.h"
#include "diagnostics/log.h"
#include "model/adanswer.h"
#include "support/json.h"

namespace znt {

bool LoadedAd::take(const QJsonValue &answer)
{
    const auto ads = adsOfAnswer(answer);
    if (!ads)
        return false;
    const QJsonObject ad = ads->first().toObject();
    readTrackingLists(m_tracking, ad, ClickForm::OfView,
        {.list = "Processed %1 dpEvent URLs", .single = "Converted single dpEvent URL to array"});
    m_data = ad;
    return true;
}

void LoadedAd::forget()
{
    m_data.reset();
    m_tracking.view = {};
    m_tracking.click = {};
}

ClickTarget LoadedAd::clickTarget() const
{
    const ClickTarget target = ClickTarget::of(m_data.value_or(QJsonObject()));
    logInfo("Click URLs - h5url: %1, deepLinkUrl: %2", target.webPage, target.deepLink);
    return target;
}

void LoadedAd::reportExposure()
{
    fireTracking(m_tracking.view,
        {.opening = "Starting exposure reporting",
            .name = "Exposure report",
            .closing = "All exposure reports completed"},
        [reported = m_hasReportedExposure] { *reported = true; });
}

void LoadedAd::reportClick(const char *closing) const
{
    fireTracking(m_tracking.click,
        {.opening = "Starting click reporting",
            .name = "Click report",
            .closing = closing,
            .namesUrl = false});
    fireTracking(m_tracking.dpEvent,
        {.opening = "Starting dpEventUrls reporting", .name = "DpEvent report"});
}

void LoadedAd::reportClose(const QString &idKey) const
{
    const QString id = json::string(m_data.value_or(QJsonObject()).value(idKey));
    if (!id.isEmpty())
        sendNegativeFeedback(id);
}

} // namespace znt

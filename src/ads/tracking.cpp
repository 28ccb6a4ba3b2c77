#include "ads/tracking.h"

#include "diagnostics/adtrace.h"
#include "diagnostics/log.h"
#include "model/ad.h"
#include "net/sessions.h"
#include "support/mainthread.h"

namespace znt {

namespace {

// Lives in the answers still to come; the last one to let go of it closes the batch.
class TrackingBatch
{
public:
    TrackingBatch(const TrackingLogTexts &texts, std::function<void()> finished)
        : m_texts(texts)
        , m_finished(std::move(finished))
    {
    }
    Q_DISABLE_COPY_MOVE(TrackingBatch)

    void answered(const QString &url, const HttpAnswer &answer) const
    {
        const QString where = m_texts.namesUrl ? u'[' + url + u']' : QLatin1String("");
        if (answer.error) {
            if (ZNTAdTrace::isOn())
                ZNTAdTrace::note(ZNTAdTrace::TrackerFailed, nullptr,
                    url + u' ' + answer.error->localizedDescription());
            logError("%1 failed%2: %3", QString::fromUtf8(m_texts.name), where, *answer.error);
        } else {
            ZNTAdTrace::note(ZNTAdTrace::TrackerDone, nullptr, url);
            logInfo("%1 successful%2", QString::fromUtf8(m_texts.name), where);
        }
    }

    ~TrackingBatch()
    {
        onMainThread([closing = m_texts.closing, finished = std::move(m_finished)] {
            if (closing)
                logInfo(closing);
            if (finished)
                finished();
        });
    }

private:
    const TrackingLogTexts m_texts;
    std::function<void()> m_finished;
};

} // namespace

void fireTracking(
    const QJsonValue &urls, const TrackingLogTexts &texts, std::function<void()> finished)
{
    const QJsonArray list = urls.toArray();
    if (list.isEmpty())
        return;

    logInfo(texts.opening);
    const auto batch = std::make_shared<TrackingBatch>(texts, std::move(finished));
    for (qsizetype i = 0; i < qMin(list.size(), maximumTrackers); ++i) {
        const QString url = list.at(i).toString();
        if (url.isEmpty())
            continue;
        ZNTAdTrace::note(ZNTAdTrace::TrackerFired, nullptr, url);
        sendHttp(Session::Tracking, {.url = url},
            [batch, url](const HttpAnswer &answer) { batch->answered(url, answer); });
    }
    if (list.size() > maximumTrackers)
        logError("%1 not sent for %2 more URLs", QString::fromUtf8(texts.name),
            list.size() - maximumTrackers);
}

void reportExposure(const QJsonValue &urls, std::function<void()> finished)
{
    fireTracking(urls,
        {.opening = "Starting exposure reporting",
            .name = "Exposure report",
            .closing = "All exposure reports completed"},
        std::move(finished));
}

void reportClick(const TrackingLists &lists, const ClickLog &log)
{
    fireTracking(lists.click,
        {.opening = "Starting click reporting",
            .name = "Click report",
            .closing = log.closesClicks ? "All click reports completed" : nullptr,
            .namesUrl = log.namesUrl});
    fireTracking(lists.dpEvent,
        {.opening = "Starting dpEventUrls reporting",
            .name = "DpEvent report",
            .closing = log.closesDpEvents ? "All dpEventUrls reports completed" : nullptr});
}

} // namespace znt

#include "feed/exposurechecks.h"

#include "ads/tracking.h"
#include "ads/visibilitywatch.h"

#include <QQuickItem>

namespace znt {

ExposureChecks::Check::Check(
    ExposureChecks *checks, QQuickItem *watched, const ZNTFeedAdDataPtr &adData)
    : view(watched)
    , record(adData)
    , timer([this, checks](VisibleShares &shares) { checks->tick(this, shares); })
{
    timer.start();
}

void ExposureChecks::start(QQuickItem *view, const ZNTFeedAdDataPtr &record)
{
    m_checks[record.get()] = std::make_unique<Check>(this, view, record);
}

void ExposureChecks::stop(const ZNTFeedAdDataPtr &record)
{
    m_checks.erase(record.get());
}

bool ExposureChecks::isRunning(const ZNTFeedAdDataPtr &record) const
{
    return m_checks.count(record.get()) > 0;
}

void ExposureChecks::forget()
{
    for (auto &[key, check] : m_checks)
        m_forgotten.push_back(std::move(check));
    m_checks.clear();
    m_reportedAdIds.clear();
}

void ExposureChecks::tick(const Check *check, VisibleShares &shares)
{
    const QQuickItem *view = check->view;
    if (!view) {
        remove(check);
        return;
    }
    if (!isReported(*check->record) && view->window()) {
        if (!checkSeen(view, shares))
            return;
        report(*check->record);
    }
    stop(ZNTFeedAdDataPtr(check->record)); // the check goes with its own
}

bool ExposureChecks::isReported(const ZNTFeedAdData &record) const
{
    return !m_reportedAdIds.isEmpty() && m_reportedAdIds.contains(record.adId());
}

void ExposureChecks::remove(const Check *check)
{
    const auto isIt = [check](const std::unique_ptr<Check> &other) { return other.get() == check; };
    const auto known = m_checks.find(check->record.get());
    if (known != m_checks.end() && isIt(known->second))
        m_checks.erase(known);
    else
        std::erase_if(m_forgotten, isIt);
}

void ExposureChecks::report(const ZNTFeedAdData &record)
{
    const auto reported = [self = QPointer<ExposureChecks>(this), adId = record.adId()] {
        if (self && !adId.isNull())
            self->m_reportedAdIds.insert(adId);
    };
    fireTracking(record.viewUrl3rd(),
        {.opening = "Starting exposure reporting",
            .name = "Exposure report",
            .closing = "All exposure reports completed"},
        reported);
}

} // namespace znt

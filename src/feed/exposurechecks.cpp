#include "feed/exposurechecks.h"

#include "ads/tracking.h"
#include "diagnostics/adtrace.h"

#include <QQuickItem>

namespace znt {

ExposureChecks::Check::Check(
    ExposureChecks *checks, QQuickItem *watched, const ZNTFeedAdDataPtr &adData)
    : owner(checks)
    , view(watched)
    , record(adData)
    , watch([this](VisibilityWatch::End how) { owner->ended(this, how); })
{
    look();
}

void ExposureChecks::Check::look()
{
    watch.start([this] { return owner->isReported(*record) ? nullptr : view.data(); });
}

void ExposureChecks::start(QQuickItem *view, const ZNTFeedAdDataPtr &record)
{
    if (ZNTAdTrace::isOn())
        ZNTAdTrace::note(ZNTAdTrace::FeedView, view, record->adId());
    m_checks[record.get()] = std::make_unique<Check>(this, view, record);
}

void ExposureChecks::stop(const ZNTFeedAdDataPtr &record)
{
    const auto found = m_checks.find(record.get());
    if (found == m_checks.end())
        return;
    found->second->watch.stop();
    m_checks.erase(found);
}

bool ExposureChecks::isRunning(const ZNTFeedAdDataPtr &record) const
{
    return m_checks.count(record.get()) > 0;
}

void ExposureChecks::forget()
{
    for (auto &[key, check] : m_checks) {
        check->isForgotten = true;
        m_forgotten.push_back(std::move(check));
    }
    m_checks.clear();
    m_reportedAdIds.clear();
}

void ExposureChecks::ended(Check *check, VisibilityWatch::End how)
{
    const ZNTFeedAdDataPtr record = check->record; // the check may go with its own
    if (how == VisibilityWatch::End::Seen)
        report(*record);
    const bool looksOn = check->isForgotten && check->view;
    if (looksOn || !check->isForgotten)
        stop(record);
    if (looksOn)
        check->look();
    else
        std::erase_if(m_forgotten, [check](const auto &other) { return other.get() == check; });
    if (how == VisibilityWatch::End::Seen)
        Q_EMIT seen(record);
}

// An ad without an id is never taken for another.
bool ExposureChecks::isReported(const ZNTFeedAdData &record) const
{
    if (m_reportedAdIds.isEmpty()) // and the record need not be looked at
        return false;
    const QString adId = record.adId();
    return !adId.isNull() && m_reportedAdIds.contains(adId);
}

void ExposureChecks::report(const ZNTFeedAdData &record)
{
    const auto reported = [self = QPointer<ExposureChecks>(this), adId = record.adId()] {
        if (self && !adId.isNull())
            self->m_reportedAdIds.insert(adId);
    };
    reportExposure(record.viewUrl3rd(), reported);
}

} // namespace znt

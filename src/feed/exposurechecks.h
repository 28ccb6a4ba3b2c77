// Which feed ads wait for being seen, and which were reported.
#pragma once

#include "ads/visibilitywatch.h"

#include <ZNTAds/ZNTFeedAdData.h>

#include <QObject>
#include <QPointer>
#include <QSet>

#include <unordered_map>
#include <vector>

class QQuickItem;

namespace znt {

// One check at most for each record, told apart by identity. What was reported is told apart by the
// ad's id, from the moment that all its trackers have answered. Main thread.
class ExposureChecks : public QObject
{
    Q_OBJECT

public:
    // Starts over for the record. The view is held weakly; a check ends with it.
    void start(QQuickItem *view, const ZNTFeedAdDataPtr &record);
    void stop(const ZNTFeedAdDataPtr &record);
    bool isRunning(const ZNTFeedAdDataPtr &record) const;
    // Drops what is known without ending the checks that still run. Out of reach of stop(), they
    // look on, and report, for as long as their views live; where one would end, it ends a newer
    // check of its record instead.
    void forget();

    const QSet<QString> &reportedAdIds() const { return m_reportedAdIds; }

Q_SIGNALS:
    // Whoever hears of it may destroy the checks.
    void seen(const ZNTFeedAdDataPtr &record);

private:
    struct Check
    {
        Check(ExposureChecks *checks, QQuickItem *watched, const ZNTFeedAdDataPtr &adData);
        void look();

        ExposureChecks *const owner;
        const QPointer<QQuickItem> view;
        const ZNTFeedAdDataPtr record;
        bool isForgotten = false;
        VisibilityWatch watch;
    };

    void ended(Check *check, VisibilityWatch::End how);
    bool isReported(const ZNTFeedAdData &record) const;
    void report(const ZNTFeedAdData &record);

    std::unordered_map<const ZNTFeedAdData *, std::unique_ptr<Check>> m_checks;
    std::vector<std::unique_ptr<Check>> m_forgotten;
    QSet<QString> m_reportedAdIds;
};

} // namespace znt

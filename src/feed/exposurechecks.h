// Which feed ads wait for being seen, and which were reported.
#pragma once

#include "ads/visibilitytimer.h"

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
public:
    // Starts over for the record. The view is held weakly; a check ends with it.
    void start(QQuickItem *view, const ZNTFeedAdDataPtr &record);
    void stop(const ZNTFeedAdDataPtr &record);
    bool isRunning(const ZNTFeedAdDataPtr &record) const;
    // Drops what is known without ending the checks that still run. Out of reach of stop(), they
    // live as long as their views.
    void forget();

    const QSet<QString> &reportedAdIds() const { return m_reportedAdIds; }

private:
    struct Check
    {
        Check(ExposureChecks *checks, QQuickItem *watched, const ZNTFeedAdDataPtr &adData);

        QPointer<QQuickItem> view;
        const ZNTFeedAdDataPtr record;
        VisibilityTimer timer;
    };

    void tick(const Check *check, VisibleShares &shares);
    bool isReported(const ZNTFeedAdData &record) const;
    void remove(const Check *check);
    void report(const ZNTFeedAdData &record);

    std::unordered_map<const ZNTFeedAdData *, std::unique_ptr<Check>> m_checks;
    std::vector<std::unique_ptr<Check>> m_forgotten;
    QSet<QString> m_reportedAdIds;
};

} // namespace znt

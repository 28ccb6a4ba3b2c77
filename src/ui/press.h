// One press on an item, from finger down to finger up.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QList>
#include <QPointF>

namespace znt {

class ZNTADS_INTERNAL Press
{
public:
    void begin(QPointF at, qint64 ms);
    void move(QPointF at, qint64 ms);
    void cancel() { m_samples.clear(); }

    bool isActive() const { return !m_samples.isEmpty(); }
    // Whether it has ever gone farther than the distance that makes a press a pan.
    bool isPan() const { return m_isPan; }
    QPointF translation() const;
    // In points a second over the last tenth of a second, so that a finger that rests before it
    // lifts is slow, however fast it was before.
    QPointF velocity() const;

private:
    struct Sample
    {
        QPointF at;
        qint64 ms;
    };
    QList<Sample> m_samples; // the last tenth of a second, and one from before it
    QPointF m_start;
    bool m_isPan = false;
};

} // namespace znt

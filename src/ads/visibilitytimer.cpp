#include "ads/visibilitytimer.h"

#include "support/clock.h"
#include "support/mainthread.h"

#include <map>
#include <utility>
#include <vector>

namespace znt {

namespace {

constexpr qint64 interval = 100; // milliseconds, like all times here
// Ticks that would be closer to each other fall together.
constexpr qint64 grain = 10;

using TickRef = std::weak_ptr<const VisibilityTimer::Tick>;

// Who is to tick when.
class Schedule
{
public:
    Schedule()
    {
        QObject::connect(&m_timer, &Timer::timeout, &m_timer, [this] { tick(); });
    }

    void add(const TickRef &run)
    {
        m_due[(now() + interval + grain) / grain * grain].push_back(run);
        wakeUpInTime();
    }

private:
    void tick()
    {
        while (!m_due.empty() && m_due.begin()->first <= now())
            tick(m_due.extract(m_due.begin()));
        wakeUpInTime();
    }

    // Taken out of the schedule meanwhile: a tick may add to it, and may run an event loop.
    void tick(std::map<qint64, std::vector<TickRef>>::node_type batch)
    {
        VisibleShares shares;
        for (const TickRef &run : batch.mapped()) {
            if (const auto tick = run.lock())
                (*tick)(shares);
        }
        std::erase_if(batch.mapped(), [](const TickRef &run) { return run.expired(); });
        if (batch.mapped().empty())
            return;
        const qint64 late = qMax<qint64>(0, now() - batch.key());
        batch.key() += (late / interval + 1) * interval; // what was missed is not made up for
        const auto inserted = m_due.insert(std::move(batch));
        if (!inserted.inserted)
            append(inserted.position->second, inserted.node.mapped());
    }

    static void append(std::vector<TickRef> &to, const std::vector<TickRef> &from)
    {
        to.insert(to.end(), from.begin(), from.end());
    }

    void wakeUpInTime()
    {
        if (m_due.empty()) {
            m_timer.stop();
            m_wakeUp = -1;
        } else if (m_due.begin()->first != m_wakeUp || !m_timer.isActive()) {
            m_wakeUp = m_due.begin()->first;
            m_timer.start(std::chrono::milliseconds(m_wakeUp - now()));
        }
    }

    Timer m_timer{Timer::Kind::Single};
    qint64 m_wakeUp = -1;
    std::map<qint64, std::vector<TickRef>> m_due;
};

} // namespace

void VisibilityTimer::start()
{
    Schedule *const schedule = ofApplication<Schedule>();
    if (!schedule)
        return;
    m_run = std::make_shared<const Tick>(m_tick);
    schedule->add(m_run);
}

} // namespace znt

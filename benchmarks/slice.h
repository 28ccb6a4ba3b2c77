// How long a piece of work held its thread, and the middle of several times.
#pragma once

#include <algorithm>
#include <chrono>
#include <ctime>
#include <vector>

// Seconds of the processor that this thread has used.
inline double threadSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) * 1e-9;
}

// From its making on, in milliseconds: by the clock, and what the processor did of it. A machine
// that is not at rest lengthens the first.
class Slice
{
public:
    double milliseconds() const
    {
        return std::chrono::duration<double, std::milli>(Clock::now() - m_begin).count();
    }
    double processorMilliseconds() const { return (threadSeconds() - m_used) * 1e3; }

private:
    using Clock = std::chrono::steady_clock;

    const Clock::time_point m_begin = Clock::now();
    const double m_used = threadSeconds();
};

// The longest of several.
struct Longest
{
    void add(const Slice &slice)
    {
        milliseconds = std::max(milliseconds, slice.milliseconds());
        processorMilliseconds = std::max(processorMilliseconds, slice.processorMilliseconds());
    }

    double milliseconds = 0;
    double processorMilliseconds = 0;
};

inline double median(std::vector<double> values)
{
    std::ranges::sort(values);
    return values.empty() ? 0 : values[values.size() / 2];
}

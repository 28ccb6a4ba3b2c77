#pragma once

#include <chrono>
#include <memory>

/// Holds the library's time for as long as it lives, and lets a test move it.
///
/// Countdowns, visibility checks, fades, time-outs and the animations of the whole process stand
/// still. What is real goes on: the network, the decoding of pictures, the host's own timers. A
/// test therefore waits for what is real and advances what is not:
/// @code
/// ZNTTestClock clock;
/// splash.loadAndShowSplashAdWithWindow(&window);
/// QTRY_VERIFY(!splash.splashAdView()->isHidden()); // pictures are real
/// clock.advance(100ms);                            // and now it has been seen
/// clock.advance(5s);                               // and is over
/// @endcode
/// Make it before the ad is loaded: what runs already goes on in real time. One at a time, main
/// thread.
class ZNTTestClock
{
public:
    ZNTTestClock();
    /// Time goes on by itself, from where it stands.
    ~ZNTTestClock();
    ZNTTestClock(const ZNTTestClock &) = delete;
    ZNTTestClock &operator=(const ZNTTestClock &) = delete;

    /// Lets @p time pass: everything that is due happens at its moment and in its order, and
    /// animations draw sixty times a second. Events are processed in between, so that what a moment
    /// sets off is done before the next. Called while it runs, from a callback, it warns and does
    /// nothing.
    void advance(std::chrono::milliseconds time);
    /// From now on time goes on by itself, that many times as fast as real time, while the event
    /// loop runs; less than 1 is slow motion, and 0, as at first, lets it stand still. What is
    /// real, a network for instance, is given as much less time: 10 suits tests that wait for
    /// conditions.
    void setSpeed(double speed);
    /// What has passed since the clock was held.
    std::chrono::milliseconds elapsed() const;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

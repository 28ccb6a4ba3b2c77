// What reads the sensors of motion. Its plugin uses Qt Sensors, which only a host that shows a
// shake ad needs.
#pragma once

#include <QObject>

#include <functional>
#include <memory>

namespace znt {

// Who takes the readings, on the main thread.
struct MotionReader
{
    // The pitch in degrees; false stops the sensor that it comes from.
    std::function<bool(double)> takePitch;
    // The strength of the acceleration in m/s², gravity included.
    std::function<void(double)> takeAcceleration;
};

class MotionBackend
{
public:
    virtual ~MotionBackend() = default;

    // Reads for as long as the returned object lives; a device that lacks a sensor has none of its
    // readings.
    virtual std::unique_ptr<QObject> listen(MotionReader reader) = 0;
};

} // namespace znt

// The number grows with each change of the interface.
Q_DECLARE_INTERFACE(znt::MotionBackend, "zntads.MotionBackend/1")

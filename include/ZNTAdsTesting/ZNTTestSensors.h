#pragma once

#include <memory>

/// A rotation sensor and an accelerometer for machines that have none: real backends of Qt Sensors,
/// moved by a test.
///
/// From its making on, sensors of the two types are this one's, in the whole process; sensors that
/// were connected before stay what they are. Main thread.
class ZNTTestSensors
{
public:
    /// Registers the backends, and makes them the default ones.
    ZNTTestSensors();
    /// Sensors that are still connected get no more samples.
    ~ZNTTestSensors();
    ZNTTestSensors(const ZNTTestSensors &) = delete;
    ZNTTestSensors &operator=(const ZNTTestSensors &) = delete;

    /// One sample whose pitch differs by @p degrees from the first since the sensor was started; if
    /// none has come yet, one of 0 goes before it.
    void tilt(double degrees);
    /// Three swings to and fro, a sample every 50 ms of real time; returns at once.
    void shake();

private:
    class Sensors;
    const std::unique_ptr<Sensors> d;
};

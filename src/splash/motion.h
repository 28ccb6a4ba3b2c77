// The device's motion, as far as a shake creative asks for it.
#pragma once

#include "splash/motiondetector.h"

#include <QAccelerometer>
#include <QElapsedTimer>
#include <QObject>
#include <QRotationSensor>

namespace znt {

// Listens to the rotation sensor and the accelerometer from its construction to its destruction; a
// device that lacks one of them is silent about it.
class ZNTADS_INTERNAL Motion : public QObject
{
    Q_OBJECT

public:
    explicit Motion(QObject *parent = nullptr);

Q_SIGNALS:
    // Once at most; the rotation sensor has been stopped.
    void tilted();
    void shaken();

private:
    void readPitch();
    void readAcceleration();

    QRotationSensor m_rotation;
    QAccelerometer m_accelerometer;
    TiltDetector m_tilt;
    ShakeDetector m_shake;
    QElapsedTimer m_clock; // not every backend gives its readings a time
};

} // namespace znt

// The device's motion, as far as a shake creative asks for it.
#pragma once

#include "splash/motiondetector.h"

#include <QObject>

#include <memory>

namespace znt {

class MotionBackend;

// Listens to the rotation sensor and the accelerometer from its construction to its destruction; a
// device that lacks one of them is silent about it, as is one without the plugin that reads them.
class ZNTADS_INTERNAL Motion : public QObject
{
    Q_OBJECT

public:
    explicit Motion(QObject *parent = nullptr);
    ~Motion() override;

Q_SIGNALS:
    // Once at most; then the rotation sensor stops.
    void tilted();
    void shaken();

private:
    void listenTo(MotionBackend &backend);
    bool takePitch(double pitch);
    void takeAcceleration(double strength);

    std::unique_ptr<QObject> m_sensors;
    TiltDetector m_tilt;
    ShakeDetector m_shake;
};

} // namespace znt

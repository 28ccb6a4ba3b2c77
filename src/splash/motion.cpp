#include "splash/motion.h"

#include "splash/backends.h"
#include "splash/motionbackend.h"
#include "support/clock.h"

namespace znt {

Motion::Motion(QObject *parent)
    : QObject(parent)
{
    withMotionBackend(this, [this](MotionBackend &backend) { listenTo(backend); });
}

Motion::~Motion() = default;

void Motion::listenTo(MotionBackend &backend)
{
    m_sensors = backend.listen({[this](double pitch) { return takePitch(pitch); },
        [this](double strength) { takeAcceleration(strength); }});
}

bool Motion::takePitch(double pitch)
{
    if (!m_tilt.add(pitch))
        return true;
    Q_EMIT tilted();
    return false;
}

void Motion::takeAcceleration(double strength)
{
    if (m_shake.add(strength, now()))
        Q_EMIT shaken();
}

} // namespace znt

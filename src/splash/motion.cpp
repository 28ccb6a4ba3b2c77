#include "splash/motion.h"

#include <algorithm>
#include <cmath>

namespace znt {

namespace {

bool isPlaceholder(const QByteArray &backend)
{
    return backend.isEmpty() || backend.startsWith("dummy.");
}

// Backends without hardware say that they are connected. The generic ones compute their readings
// from the accelerometer's.
bool connectToHardware(QSensor &sensor)
{
    if (!sensor.connectToBackend() || isPlaceholder(sensor.identifier()))
        return false;
    return !sensor.identifier().startsWith("generic.")
        || !isPlaceholder(QSensor::defaultSensorForType(QAccelerometer::sensorType));
}

// A sensor with no such rate keeps its own.
void startAtRate(QSensor &sensor, int samplesPerSecond)
{
    if (!connectToHardware(sensor))
        return;
    const qrangelist rates = sensor.availableDataRates();
    const auto offers = [samplesPerSecond](const qrange &rate) {
        return rate.first <= samplesPerSecond && samplesPerSecond <= rate.second;
    };
    if (std::any_of(rates.begin(), rates.end(), offers))
        sensor.setDataRate(samplesPerSecond);
    sensor.start();
}

} // namespace

Motion::Motion(QObject *parent)
    : QObject(parent)
{
    m_clock.start();
    connect(&m_rotation, &QSensor::readingChanged, this, &Motion::readPitch);
    connect(&m_accelerometer, &QSensor::readingChanged, this, &Motion::readAcceleration);
    startAtRate(m_rotation, 10);
    startAtRate(m_accelerometer, 50);
}

void Motion::readPitch()
{
    const QRotationReading *reading = m_rotation.reading();
    if (!reading || !m_tilt.add(reading->x()))
        return;
    m_rotation.stop();
    Q_EMIT tilted();
}

void Motion::readAcceleration()
{
    const QAccelerometerReading *reading = m_accelerometer.reading();
    if (!reading)
        return;
    const double strength = std::hypot(reading->x(), reading->y(), reading->z());
    if (m_shake.add(strength, m_clock.elapsed()))
        Q_EMIT shaken();
}

} // namespace znt

#include "splash/motionbackend.h"

#include <QAccelerometer>
#include <QRotationSensor>

#include <algorithm>
#include <cmath>
#include <utility>

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

class MotionSensors : public QObject
{
public:
    explicit MotionSensors(MotionReader reader)
        : m_reader(std::move(reader))
    {
        connect(&m_rotation, &QSensor::readingChanged, this, &MotionSensors::readPitch);
        connect(&m_accelerometer, &QSensor::readingChanged, this, &MotionSensors::readAcceleration);
        startAtRate(m_rotation, 10);
        startAtRate(m_accelerometer, 50);
    }

private:
    void readPitch()
    {
        const QRotationReading *reading = m_rotation.reading();
        if (reading && !m_reader.takePitch(reading->x()))
            m_rotation.stop();
    }

    void readAcceleration()
    {
        if (const QAccelerometerReading *reading = m_accelerometer.reading())
            m_reader.takeAcceleration(std::hypot(reading->x(), reading->y(), reading->z()));
    }

    const MotionReader m_reader;
    QRotationSensor m_rotation;
    QAccelerometer m_accelerometer;
};

} // namespace

} // namespace znt

class ZNTAdsMotionPlugin : public QObject, public znt::MotionBackend
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "zntads.MotionBackend/1")
    Q_INTERFACES(znt::MotionBackend)

public:
    std::unique_ptr<QObject> listen(znt::MotionReader reader) override
    {
        return std::make_unique<znt::MotionSensors>(std::move(reader));
    }
};

#include "motionplugin.moc"

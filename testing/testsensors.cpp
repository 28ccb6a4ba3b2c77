#include <ZNTAdsTesting/ZNTTestSensors.h>

#include <QAccelerometer>
#include <QDateTime>
#include <QPointer>
#include <QRotationSensor>
#include <QSensorBackend>
#include <QSensorManager>
#include <QTimer>

#include <optional>

namespace {

constexpr char identifier[] = "zntads-testing";
constexpr double gravity = 9.8;                     // m/s²
constexpr double shakes[] = {30, 0, -30, 0, 30, 0}; // m/s² to the side, rests in between
constexpr int shakeInterval = 50;                   // milliseconds

template <class Reading>
class Backend : public QSensorBackend
{
public:
    explicit Backend(QSensor *sensor)
        : QSensorBackend(sensor)
    {
        setReading<Reading>(&m_reading);
        addDataRate(1, 100);
    }

    void start() override
    {
        m_running = true;
        m_firstPitch.reset();
    }
    void stop() override { m_running = false; }

    // A stopped sensor has no samples.
    void deliver(double x, double y, double z)
    {
        if (!m_running)
            return;
        setAxes(x, y, z);
        m_reading.setTimestamp(quint64(QDateTime::currentMSecsSinceEpoch()) * 1000);
        newReadingAvailable();
    }

    void tilt(double degrees)
    {
        if (!m_firstPitch) {
            m_firstPitch = 0;
            deliver(0, 0, 0);
        }
        deliver(*m_firstPitch + degrees, 0, 0);
    }

private:
    void setAxes(double x, double y, double z);

    Reading m_reading{this};
    bool m_running = false;
    std::optional<double> m_firstPitch;
};

template <>
void Backend<QRotationReading>::setAxes(double x, double y, double z)
{
    m_reading.setFromEuler(x, y, z);
}

template <>
void Backend<QAccelerometerReading>::setAxes(double x, double y, double z)
{
    m_reading.setX(x);
    m_reading.setY(y);
    m_reading.setZ(z);
}

template <class Reading>
class Factory : public QSensorBackendFactory
{
public:
    explicit Factory(const char *type)
        : m_type(type)
    {
        QSensorManager::registerBackend(m_type, identifier, this);
        QSensorManager::setDefaultBackend(m_type, identifier);
    }
    ~Factory() override { QSensorManager::unregisterBackend(m_type, identifier); }

    QSensorBackend *createBackend(QSensor *sensor) override
    {
        auto *backend = new Backend<Reading>(sensor);
        m_backends.append(backend);
        return backend;
    }

    template <class Action>
    void forEach(Action action)
    {
        m_backends.removeIf([](const auto &backend) { return !backend; });
        const auto backends = m_backends; // a sample may make or end a sensor
        for (const QPointer<QSensorBackend> &backend : backends) {
            if (backend)
                action(static_cast<Backend<Reading> *>(backend.data()));
        }
    }

private:
    const QByteArray m_type;
    QList<QPointer<QSensorBackend>> m_backends;
};

} // namespace

class ZNTTestSensors::Sensors : public QObject
{
public:
    Factory<QRotationReading> rotation{QRotationSensor::sensorType};
    Factory<QAccelerometerReading> acceleration{QAccelerometer::sensorType};
};

ZNTTestSensors::ZNTTestSensors()
    : d(std::make_unique<Sensors>())
{
}

ZNTTestSensors::~ZNTTestSensors() = default;

void ZNTTestSensors::tilt(double degrees)
{
    d->rotation.forEach([degrees](auto *backend) { backend->tilt(degrees); });
}

void ZNTTestSensors::shake()
{
    int at = 0;
    for (const double x : shakes) {
        QTimer::singleShot(at, Qt::PreciseTimer, d.get(), [this, x] {
            d->acceleration.forEach([x](auto *backend) { backend->deliver(x, 0, gravity); });
        });
        at += shakeInterval;
    }
}

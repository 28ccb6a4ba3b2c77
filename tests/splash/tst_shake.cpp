#include "splash/creatives.h"
#include "splash/motiondetector.h"

#include <QAccelerometer>
#include <QRotationSensor>
#include <QSensorBackend>
#include <QSensorManager>

using namespace znt;
using namespace znt::test;

namespace {

// Sensors that this machine lacks, registered with Qt like any device's.
template <class Reading>
class Backend : public QSensorBackend
{
public:
    explicit Backend(QSensor *sensor)
        : QSensorBackend(sensor)
    {
        setReading<Reading>(&m_reading);
        addDataRate(1, 100);
        latest = this;
    }
    void start() override { isRunning = true; }
    void stop() override { isRunning = false; }

    void feed(double x)
    {
        if constexpr (std::is_same_v<Reading, QRotationReading>)
            m_reading.setFromEuler(x, 90, 90);
        else
            m_reading.setX(x);
        newReadingAvailable();
    }

    bool isRunning = false;
    static inline QPointer<Backend> latest;

private:
    Reading m_reading;
};

using Rotation = Backend<QRotationReading>;
using Acceleration = Backend<QAccelerometerReading>;

class Factory : public QSensorBackendFactory
{
public:
    QSensorBackend *createBackend(QSensor *sensor) override
    {
        if (sensor->identifier() == "test.rotation")
            return new Rotation(sensor);
        return new Acceleration(sensor);
    }
};

constexpr double g = 9.80665;

} // namespace

class TestShake : public QObject
{
    Q_OBJECT

private:
    Factory factory;

    static void shake()
    {
        for (const double strength : {1.0, 2.5, 1.0, -2.5, 1.0})
            Acceleration::latest->feed(strength * g);
        Scene::settle();
    }

private slots:
    void initTestCase()
    {
        failOnWarnings();
        { // a device without sensors is quiet
            Scene scene(Shake);
            qobject_cast<ZNTShakeAdView *>(scene.view)->handleShakeAction();
            QCOMPARE(scene.clicks(), 1);
        }
        QSensorManager::registerBackend(QRotationSensor::sensorType, "test.rotation", &factory);
        QSensorManager::registerBackend(QAccelerometer::sensorType, "test.acceleration", &factory);
        QSensorManager::setDefaultBackend(QRotationSensor::sensorType, "test.rotation");
        QSensorManager::setDefaultBackend(QAccelerometer::sensorType, "test.acceleration");
        Scene scene(Shake);
        QTRY_VERIFY(Acceleration::latest); // the first one waits for the plugin
    }

    void init() { failOnWarnings(); }

    void tilt()
    {
        const std::pair<QList<double>, int> rows[] = {// pitches; the one that fires, or -1
            {{11.459, 40.107, 41.826, 90}, 2},        // 28.6 degrees, 30.4
            {{0, 10, 20, 30, 31}, 4},                 // little by little
            {{-75, -45, -44.9}, 2},                   // any angle to begin with
            {{10, 40, -20}, -1},                      // exactly 30
            {{10, -20.5, 10, 41}, 1}, {{qQNaN(), 0, qQNaN(), qInf(), 29, 31}, 5}};
        for (const auto &[pitches, firesAt] : rows) {
            Scene scene(Shake);
            QVERIFY(Rotation::latest->isRunning);
            QCOMPARE(Rotation::latest->sensor()->dataRate(), 10);
            for (int i = 0; i < pitches.size(); ++i) {
                Rotation::latest->feed(pitches.at(i));
                Scene::settle();
                QCOMPARE(scene.clicks(), firesAt >= 0 && i >= firesAt ? 1 : 0);
                QCOMPARE(Rotation::latest->isRunning, firesAt < 0 || i < firesAt);
            }
        }
    }

    void shakeDetector()
    {
        using Samples = QList<QPair<int, double>>; // ms, g
        const auto shakes = [](const Samples &samples) {
            ShakeDetector detector;
            int count = 0;
            for (const auto &[ms, strength] : samples)
                count += detector.add(strength * g, ms);
            return count;
        };
        const auto swings = [&](std::initializer_list<int> times, double strength) {
            Samples samples;
            for (const int ms : times)
                samples << QPair(ms, strength) << QPair(ms + 20, 1.0);
            return shakes(samples);
        };
        QCOMPARE(shakes({{0, 1}, {100, 1.4}, {200, 1}}), 0);
        QCOMPARE(swings({0}, 3), 0);
        QCOMPARE(swings({0, 300}, 2.01), 1);
        QCOMPARE(swings({0, 300, 600}, 2), 0);
        QCOMPARE(swings({0, 1001, 2002}, 3), 0);
        QCOMPARE(swings({0, 1000}, 3), 1);
        QCOMPARE(shakes({{0, 3}, {200, 1.6}, {400, 3}, {600, 1}}), 0); // one long swing
        QCOMPARE(swings({0, 200, 400, 600, 800, 1000, 1200, 1400}, 3), 1);
        QCOMPARE(swings({0, 200, 400, 1000, 1200}, 3), 2);
        QCOMPARE(shakes({{0, 3}, {10, qQNaN()}, {20, 1}, {30, qQNaN()}, {300, 3}, {320, 1}}), 1);
    }

    void everyShakeIsAClick()
    {
        Scene scene(Shake);
        shake();
        QCOMPARE(scene.clicks(), 1);
        Rotation::latest->feed(0);
        Rotation::latest->feed(31);
        Scene::settle();
        QCOMPARE(scene.clicks(), 2);
        QTest::qWait(600); // the shake has come to its end
        shake();
        QCOMPARE(scene.clicks(), 3);
    }

    void sensorsLiveAsLongAsTheView()
    {
        {
            Scene scene(Shake);
            scene.host.then = [&](const QString &) { delete scene.view; };
            Rotation::latest->feed(0);
            Rotation::latest->feed(31);
            shake(); // both wait to be told
            QVERIFY(!scene.view);
            QCOMPARE(scene.clicks(), 1);
        }
        QVERIFY(!Rotation::latest && !Acceleration::latest);
        Scene scene(Image);
        QVERIFY(!Rotation::latest && !Acceleration::latest);
    }
};

QTEST_MAIN(TestShake)
#include "tst_shake.moc"

// A rotation sensor and an accelerometer for machines that have none, moved by a script.
#pragma once

#include <QObject>

#include <memory>

namespace player {

class Motion : public QObject
{
    Q_OBJECT

public:
    // From here on sensors of the two types are this one's.
    explicit Motion(QObject *parent = nullptr);
    ~Motion() override;

    // One sample whose pitch differs by that much from the first since the sensor was started.
    void tilt(double degrees);
    // Three swings to and fro.
    void shake();

private:
    class Sensors;
    const std::unique_ptr<Sensors> d;
};

} // namespace player

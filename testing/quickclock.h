// A ZNTTestClock as QML has it.
#pragma once

#include <ZNTAdsTesting/ZNTTestClock.h>

#include <QObject>

#include <optional>

namespace znt::testing {

class QuickClock : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool held READ isHeld WRITE setHeld NOTIFY heldChanged)
    Q_PROPERTY(double speed READ speed WRITE setSpeed NOTIFY speedChanged)
    Q_PROPERTY(qint64 elapsed READ elapsed)

public:
    explicit QuickClock(QObject *parent = nullptr)
        : QObject(parent)
    {
        m_clock.emplace();
    }

    bool isHeld() const { return m_clock.has_value(); }
    void setHeld(bool held);
    double speed() const { return m_speed; }
    void setSpeed(double speed);
    qint64 elapsed() const { return m_clock ? m_clock->elapsed().count() : 0; }

    // Does nothing while time is not held.
    Q_INVOKABLE void advance(double milliseconds);

Q_SIGNALS:
    void heldChanged();
    void speedChanged();

private:
    std::optional<ZNTTestClock> m_clock;
    double m_speed = 0;
};

} // namespace znt::testing

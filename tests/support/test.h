// What every test begins with: Qt, and what a test needs of it.
#pragma once

#include "pch.h"

#include <ZNTAdsTesting/ZNTTestClock.h>

#include <QSignalSpy>
#include <QTest>

namespace znt::test {

using namespace std::chrono_literals;

// The library's time at its usual speed, until a test has it go faster.
class RunningClock : public ZNTTestClock
{
public:
    RunningClock() { setSpeed(1); }
};

// Every warning of Qt or QML that a test does not expect fails it.
inline void failOnWarnings()
{
    QTest::failOnWarning(QRegularExpression(".?"));
}

inline QJsonObject json(const QByteArray &text)
{
    return QJsonDocument::fromJson(text).object();
}

inline QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Gives the path back.
inline QString saved(const QString &path, const QByteArray &data)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size())
        qFatal("%s", qPrintable(file.errorString()));
    return path;
}

// What the QML says, as a file at the address, where that matters.
inline std::unique_ptr<QObject> created(
    QQmlEngine *engine, const QByteArray &qml, const QUrl &address = {})
{
    QQmlComponent component(engine);
    component.setData(qml, address);
    std::unique_ptr<QObject> object(component.create());
    if (!object)
        qFatal("%s", qPrintable(component.errorString()));
    return object;
}

// A window that is on screen, as far as there is one.
class ShownWindow : public QQuickWindow
{
public:
    explicit ShownWindow(QSize size)
    {
        resize(size);
        show();
        if (!QTest::qWaitForWindowExposed(this))
            qFatal("no window");
    }
};

} // namespace znt::test

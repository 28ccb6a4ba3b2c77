// What both hosts share.
#pragma once

#include <QFile>
#include <QGuiApplication>
#include <QTimer>

// Whether this process has loaded that library.
inline bool hasLoaded(const char *library)
{
    QFile maps(QStringLiteral("/proc/self/maps"));
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains(library);
}

// Ends with this status, from the event loop.
inline void finish(bool good)
{
    QTimer::singleShot(0, qApp, [good] { QCoreApplication::exit(good ? 0 : 1); });
}

inline int runHost()
{
    QTimer::singleShot(30'000, qApp, [] {
        qWarning("No ad was seen");
        QCoreApplication::exit(2);
    });
    return QGuiApplication::exec();
}

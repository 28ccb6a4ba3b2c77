#include "core/userdefaults.h"

#include "support/mainthread.h"

#include <QCoreApplication>
#include <QLockFile>
#include <QMutex>
#include <QSettings>
#include <QThreadPool>

#include <cstdlib>

namespace znt::userdefaults {

namespace {

// The application's own. They keep nothing without an organisation; an application that names none
// stands in for it.
QSettings settings()
{
    const QString name = QCoreApplication::applicationName();
    if (QCoreApplication::organizationName().isEmpty()
        && QCoreApplication::organizationDomain().isEmpty())
        return QSettings(QSettings::defaultFormat(), QSettings::UserScope, name, name);
    return QSettings();
}

// How long the application's end waits for the disk, or for another process that holds the file.
constexpr int endPatience = 1000; // ms
// How long a reader waits for the disk.
constexpr int readPatience = 40; // ms

using Values = QMap<QString, QJsonValue>;

// One thread: values reach the disk in the order in which they were stored. The disk may hang, or
// another process hold the file for seconds; meanwhile reading gives what is known.
struct Desk
{
    Desk() { pool.setMaxThreadCount(1); }

    QThreadPool pool;
    Values unwritten; // the thread's own
    QMutex mutex;     // guards the rest
    int inFlight = 0;
    Values known;
};

Desk &desk()
{
    return neverDestroyed<Desk>();
}

// What an application stores is written before it goes.
struct LastWrite
{
    ~LastWrite() { waitForStored(); }
};

// Before exit() destroys what QSettings stands on, which settings() has made.
void finishBeforeExit()
{
    static const int registered = (settings(), std::atexit(waitForStored));
    Q_UNUSED(registered)
}

QJsonValue onDisk(const QString &key)
{
    finishBeforeExit();
    const QSettings stored = settings();
    return stored.contains(key) ? QJsonValue::fromVariant(stored.value(key))
                                : QJsonValue::Undefined;
}

// What the disk does not take is written with what is stored next. Waits for another process before
// QSettings would, with the application's own readers behind it.
void write(const Values &values)
{
    finishBeforeExit();
    QSettings stored = settings();
    QLockFile(stored.fileName() + QStringLiteral(".lock")).lock();
    Values &unwritten = desk().unwritten;
    unwritten.insert(values);
    for (auto it = unwritten.begin(); it != unwritten.end(); ++it) {
        if (it->isUndefined() || it->isNull())
            stored.remove(it.key());
        else
            stored.setValue(it.key(), it->toVariant());
    }
    stored.sync();
    if (stored.status() == QSettings::NoError)
        unwritten.clear();
}

} // namespace

QJsonValue read(const QString &key)
{
    Desk &at = desk();
    QMutexLocker lock(&at.mutex);
    const bool isIdle = at.inFlight == 0;
    if (isIdle || !at.known.contains(key)) {
        ++at.inFlight;
        at.pool.start([key] {
            const QJsonValue value = onDisk(key);
            const QMutexLocker locked(&desk().mutex);
            if (--desk().inFlight == 0 || !desk().known.contains(key))
                desk().known.insert(key, value);
        });
        lock.unlock();
        if (isIdle) // else something hangs
            at.pool.waitForDone(readPatience);
        lock.relock();
    }
    return at.known.value(key, QJsonValue::Undefined);
}

void store(const Values &values)
{
    ofApplication<LastWrite>();
    {
        const QMutexLocker lock(&desk().mutex);
        ++desk().inFlight;
        for (auto it = values.begin(); it != values.end(); ++it)
            desk().known.insert(it.key(), it->isNull() ? QJsonValue::Undefined : *it);
    }
    desk().pool.start([values] {
        write(values);
        const QMutexLocker lock(&desk().mutex);
        --desk().inFlight;
    });
}

void waitForStored()
{
    desk().pool.waitForDone(endPatience);
}

} // namespace znt::userdefaults

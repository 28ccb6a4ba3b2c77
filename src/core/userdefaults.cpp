#include "core/userdefaults.h"

#include "support/mainthread.h"

#include <QCoreApplication>
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

// One thread: values reach the disk in the order in which they were stored. Another process may
// hold the file for seconds; until it lets go, reading gives what is known.
struct Writer
{
    Writer() { pool.setMaxThreadCount(1); }

    QThreadPool pool;
    QMutex mutex; // guards the rest
    int onTheWay = 0;
    QMap<QString, QJsonValue> known;
};

Writer &writer()
{
    return neverDestroyed<Writer>();
}

// What an application stores is written before it goes.
struct LastWrite
{
    ~LastWrite() { waitForStored(); }
};

// Before exit() destroys what QSettings stands on, which settings() has made.
void writeBeforeExit()
{
    static const int registered = (settings(), std::atexit(waitForStored));
    Q_UNUSED(registered)
}

void write(const QMap<QString, QJsonValue> &values)
{
    QSettings stored = settings();
    for (auto it = values.begin(); it != values.end(); ++it) {
        if (it->isUndefined() || it->isNull())
            stored.remove(it.key());
        else
            stored.setValue(it.key(), it->toVariant());
    }
    stored.sync();
}

} // namespace

QJsonValue read(const QString &key)
{
    {
        const QMutexLocker lock(&writer().mutex);
        if (writer().onTheWay > 0 && writer().known.contains(key))
            return writer().known.value(key);
    }
    const QSettings stored = settings();
    const QJsonValue value =
        stored.contains(key) ? QJsonValue::fromVariant(stored.value(key)) : QJsonValue::Undefined;
    const QMutexLocker lock(&writer().mutex);
    writer().known.insert(key, value);
    return value;
}

void store(const QMap<QString, QJsonValue> &values)
{
    ofApplication<LastWrite>();
    {
        const QMutexLocker lock(&writer().mutex);
        ++writer().onTheWay;
        for (auto it = values.begin(); it != values.end(); ++it)
            writer().known.insert(it.key(), it->isNull() ? QJsonValue::Undefined : *it);
    }
    writer().pool.start([values] {
        writeBeforeExit();
        write(values);
        const QMutexLocker lock(&writer().mutex);
        --writer().onTheWay;
    });
}

void waitForStored()
{
    writer().pool.waitForDone(endPatience);
}

} // namespace znt::userdefaults

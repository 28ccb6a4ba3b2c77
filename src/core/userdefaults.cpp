#include "core/userdefaults.h"

#include "support/mainthread.h"

#include <QCoreApplication>
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

// One thread: values reach the disk in the order in which they were stored.
struct Writer
{
    Writer() { pool.setMaxThreadCount(1); }
    QThreadPool pool;
};

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
    waitForStored();
    const QSettings stored = settings();
    return stored.contains(key) ? QJsonValue::fromVariant(stored.value(key))
                                : QJsonValue::Undefined;
}

void store(const QMap<QString, QJsonValue> &values)
{
    ofApplication<LastWrite>();
    neverDestroyed<Writer>().pool.start([values] {
        writeBeforeExit();
        write(values);
    });
}

void waitForStored()
{
    neverDestroyed<Writer>().pool.waitForDone();
}

} // namespace znt::userdefaults

#include "core/userdefaults.h"

#include <QCoreApplication>
#include <QSettings>
#include <QThreadPool>

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
class Writer
{
public:
    Writer()
    {
        settings(); // what they stand on is made before the writer, and so outlives it at exit
        pool.setMaxThreadCount(1);
    }
    QThreadPool pool;
};
Q_GLOBAL_STATIC(Writer, writer)

// What an application stores is written before it goes.
void finishWithApplication()
{
    qAddPostRoutine(waitForStored);
}
Q_COREAPP_STARTUP_FUNCTION(finishWithApplication)

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
    writer->pool.start([values] {
        QSettings stored = settings();
        for (auto it = values.begin(); it != values.end(); ++it) {
            if (it->isUndefined() || it->isNull())
                stored.remove(it.key());
            else
                stored.setValue(it.key(), it->toVariant());
        }
        stored.sync();
    });
}

void waitForStored()
{
    writer->pool.waitForDone();
}

} // namespace znt::userdefaults

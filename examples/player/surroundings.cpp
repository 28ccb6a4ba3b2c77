#include "surroundings.h"

#include <QDir>
#include <QGuiApplication>
#include <QSettings>
#include <QSslConfiguration>

namespace player {

namespace {

const QStringList windowless{u"offscreen"_s, u"minimal"_s};

bool keepUnder(const QDir &dir)
{
    // The display's key lies in the home that is left behind.
    if (!qEnvironmentVariableIsSet("XAUTHORITY"))
        qputenv("XAUTHORITY", QFile::encodeName(QDir::home().filePath(u".Xauthority"_s)));

    bool made = dir.mkpath(u"Documents"_s);
    const auto keep = [&](const char *variable, const QString &folder) {
        made = dir.mkpath(folder) && made;
        qputenv(variable, QFile::encodeName(QDir::cleanPath(dir.absoluteFilePath(folder))));
    };
    keep("HOME", u"."_s);
    keep("XDG_CONFIG_HOME", u"config"_s);
    keep("XDG_DATA_HOME", u"data"_s);
    keep("XDG_CACHE_HOME", u"cache"_s);
    keep("XDG_STATE_HOME", u"state"_s);
    keep("TMPDIR", u"tmp"_s);
    return made;
}

// A settings file has no booleans, only these two texts.
QJsonValue typed(const QVariant &value)
{
    if (value == QVariant(u"true"_s))
        return true;
    if (value == QVariant(u"false"_s))
        return false;
    return QJsonValue::fromVariant(value);
}

} // namespace

bool settleProcess(const Options &options)
{
    if (!hasDisplay() && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    return options.dataDir.isEmpty() || keepUnder(QDir(options.dataDir));
}

void settleApplication(const Options &options)
{
    QCoreApplication::setOrganizationName(u"ZNTAds"_s);
    QCoreApplication::setOrganizationDomain(u"zntads.example"_s);
    QCoreApplication::setApplicationName(u"zntads-player"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(PLAYER_VERSION));
    QGuiApplication::setApplicationDisplayName(u"ZNTAds Player"_s);

    QSettings settings;
    for (const auto &[key, value] : options.defaults)
        settings.setValue(key, value);
    settings.sync();

    if (!options.authorities.isEmpty()) {
        QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
        // Qt looks up the system's by itself no more, once there are others.
        configuration.setCaCertificates(
            QSslConfiguration::systemCaCertificates() + options.authorities);
        QSslConfiguration::setDefaultConfiguration(configuration);
    }
}

bool hasDisplay()
{
    const QString platform = qEnvironmentVariable("QT_QPA_PLATFORM").section(u':', 0, 0);
    if (!platform.isEmpty())
        return !windowless.contains(platform);
    return !qEnvironmentVariableIsEmpty("DISPLAY")
        || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

bool isOffScreen()
{
    return windowless.contains(QGuiApplication::platformName());
}

QJsonObject storedDefaults()
{
    const QSettings settings;
    QJsonObject stored;
    for (const QString &key : settings.allKeys()) {
        if (key.startsWith(u"ZNTAds_"_s))
            stored.insert(key, typed(settings.value(key)));
    }
    return stored;
}

} // namespace player

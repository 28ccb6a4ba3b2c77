#include "support/devicefacts.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QLocale>
#include <QPointer>
#include <QScreen>
#include <QSysInfo>
#include <QTimeZone>
#include <QUuid>

#include <atomic>

#ifdef Q_OS_UNIX
#include <sys/utsname.h>
#endif

namespace znt::device {

namespace {

// Two 32-bit numbers in one word, so that any thread reads a size that once was true.
Q_CONSTINIT std::atomic<quint64> points{0};
Q_CONSTINIT std::atomic<quint64> pixels{0};

quint64 packed(QSizeF size)
{
    return quint64(quint32(size.width())) << 32 | quint32(size.height());
}

QSize unpacked(quint64 word)
{
    return {int(word >> 32), int(word & 0xffffffff)};
}

void readScreen(const QScreen *screen)
{
    const QSizeF size = screen ? QSizeF(screen->size()) : QSizeF(0, 0);
    points = packed(size);
    const qreal ratio = screen ? screen->devicePixelRatio() : 1;
    pixels = packed({double(qRound(size.width() * ratio)), double(qRound(size.height() * ratio))});
}

void followScreen(QScreen *screen)
{
    readScreen(screen);
    if (screen)
        QObject::connect(screen, &QScreen::geometryChanged, qApp,
            [] { readScreen(QGuiApplication::primaryScreen()); });
}

QString canonical(const QUuid &uuid)
{
    return uuid.toString(QUuid::WithoutBraces).toUpper();
}

} // namespace

QString hardwareModel()
{
#ifdef Q_OS_UNIX
    utsname name{};
    if (uname(&name) == 0)
        return QString::fromUtf8(name.machine);
#endif
    return QSysInfo::currentCpuArchitecture();
}

QString kernelVersion()
{
#ifdef Q_OS_UNIX
    utsname name{};
    if (uname(&name) == 0)
        return QString::fromUtf8(name.release);
#endif
    return QSysInfo::kernelVersion();
}

QString systemVersion()
{
    return QSysInfo::productVersion();
}

QString formFactor()
{
#if defined(Q_OS_ANDROID) || defined(Q_OS_IOS)
    return QStringLiteral("Phone");
#else
    return QStringLiteral("Desktop");
#endif
}

QString advertisingId()
{
    // Qt has none; all zeros is what platforms give when the user does not share it.
    return canonical(QUuid());
}

QString vendorId()
{
    const QByteArray machineId = QSysInfo::machineUniqueId();
    if (machineId.isEmpty())
        return canonical(QUuid());
    // Stable for this vendor on this machine, and telling nobody the machine's own id.
    static constexpr QUuid vendorSpace(
        0x8a3f5d0e, 0x4b1c, 0x5c6e, 0x9a, 0x77, 0x2e, 0x51, 0x0d, 0x63, 0xb8, 0x14);
    return canonical(QUuid::createUuidV5(
        vendorSpace, machineId + QCoreApplication::organizationDomain().toUtf8()));
}

QString preferredLanguage()
{
    return QLocale::system().uiLanguages().value(0);
}

QString timeZone()
{
    return QString::fromUtf8(QTimeZone::systemTimeZoneId());
}

QSize screenPoints()
{
    return unpacked(points);
}

QSize screenPixels()
{
    return unpacked(pixels);
}

void watchScreen()
{
    static QPointer<QGuiApplication> watched;
    auto *application = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
    if (!application || application == watched)
        return;
    watched = application;
    QObject::connect(
        application, &QGuiApplication::primaryScreenChanged, application, followScreen);
    followScreen(QGuiApplication::primaryScreen());
}

} // namespace znt::device

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
#include <bit>
#include <cmath>

#ifdef Q_OS_UNIX
#include <sys/utsname.h>
#endif

namespace znt::device {

namespace {

// Two 32-bit numbers in one word, so that any thread reads a size that once was true.
Q_CONSTINIT std::atomic<quint64> pixels{0};
Q_CONSTINIT std::atomic<double> pixelRatio{1};
Q_CONSTINIT std::atomic<bool> isRead{false};

// Qt rounds the side of a screen to whole points. Of the pixels that it may have, panels have the
// number that can be halved most often.
int pixelsOf(int length, double ratio)
{
    const int first = int(std::ceil((length - 0.5) * ratio));
    const int last = int(std::floor((length + 0.5) * ratio));
    int best = qRound(length * ratio);
#ifndef Q_OS_DARWIN // there points are whole
    for (int side = first; side <= last; ++side) {
        if (std::countr_zero(unsigned(side)) > std::countr_zero(unsigned(best)))
            best = side;
    }
#endif
    return best;
}

void readScreen(const QScreen *screen)
{
    const double ratio = screen ? screen->devicePixelRatio() : 1;
    const QSize size = screen ? screen->size() : QSize(0, 0);
    const auto side = [ratio](int length) { return quint64(quint32(pixelsOf(length, ratio))); };
    pixels = side(size.width()) << 32 | side(size.height());
    pixelRatio = ratio;
    isRead = true;
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

bool isScreenKnown()
{
    return isRead;
}

QSize screenPoints()
{
    const QSize size = screenPixels();
    return {int(size.width() / pixelRatio), int(size.height() / pixelRatio)};
}

QSize screenPixels()
{
    const quint64 word = pixels;
    return {int(word >> 32), int(word & 0xffffffff)};
}

void watchScreen()
{
    static QPointer<QGuiApplication> watched;
    auto *application = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
    isRead = isRead || QCoreApplication::instance();
    if (!application || application == watched)
        return;
    watched = application;
    QObject::connect(
        application, &QGuiApplication::primaryScreenChanged, application, followScreen);
    followScreen(QGuiApplication::primaryScreen());
}

} // namespace znt::device

// From the start of a process to the moment at which a splash ad counts as seen, beside the same
// program that shows a bare window; and the memory that is the process's own. bench_launch
// [HTTPS_URL HTTP_URL CA_FILE], and without an exchange it shows the bare window. Prints
// milliseconds and KiB.
#include <ZNTAds/ZNTAdsSDK.h>
#include <ZNTAds/ZNTSplashManager.h>

#include <QFile>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QSslConfiguration>

#include <cstdio>
#include <ctime>

#include <unistd.h>

namespace {

// Since the process was started, by the kernel's account.
double processMilliseconds()
{
    QFile file(QStringLiteral("/proc/self/stat"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray text = file.readAll();
    const double ticks = text.mid(text.lastIndexOf(')') + 2).split(' ').value(19).toDouble();
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return (double(now.tv_sec) + double(now.tv_nsec) * 1e-9 - ticks / double(sysconf(_SC_CLK_TCK)))
        * 1e3;
}

int proportionalMemory()
{
    QFile file(QStringLiteral("/proc/self/smaps_rollup"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray text = file.readAll();
    return text.mid(text.indexOf("Pss:") + 4).simplified().split(' ').value(0).toInt();
}

void finish()
{
    const double time = processMilliseconds();
    std::printf("%.1f %d\n", time, proportionalMemory());
    QCoreApplication::quit();
}

} // namespace

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("ZNTAds benchmarks"));
    QQuickWindow window;
    window.resize(375, 812);
    window.show();
    ZNTSplashManager *splash = nullptr;
    if (argc == 4) {
        const QStringList arguments = application.arguments();
        QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
        configuration.addCaCertificates(arguments.at(3));
        QSslConfiguration::setDefaultConfiguration(configuration);
        ZNTAdsSDK::setEndpoints(QUrl(arguments.at(1)), QUrl(arguments.at(2)));
        ZNTAdsSDK::registerWithAppId(
            QStringLiteral("app"), QStringLiteral("media"), QStringLiteral("demo-secret"));
        splash = new ZNTSplashManager(&application);
        splash->setMediaId(QStringLiteral("splash"));
        QObject::connect(splash, &ZNTSplashManager::loaded, splash,
            [splash, &window] { splash->showSplashAdWithWindow(&window); });
        QObject::connect(splash, &ZNTSplashManager::failed, splash,
            [](const ZNTError &error) { qFatal("%s", qPrintable(error.localizedDescription())); });
        QObject::connect(splash, &ZNTSplashManager::rendered, splash, &finish);
        splash->loadAndShowSplashAdWithWindow(&window);
    } else {
        QObject::connect(&window, &QQuickWindow::frameSwapped, &application, &finish);
    }
    return QGuiApplication::exec();
}

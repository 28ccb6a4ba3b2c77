#include <ZNTAds/ZNTAdsSDK.h>
#include <ZNTAds/ZNTSplashManager.h>

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>

// Uses the library from C++ and from QML, as a host would.
int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    ZNTSplashManager manager;
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData("import ZNTAds\nZNTSplashImageAdView {}", QUrl());
    const std::unique_ptr<QObject> view(component.create());
    if (!view)
        qWarning("%s", qPrintable(component.errorString()));
    return view && ZNTAdsSDK::version() == QLatin1String("1.1.0") ? 0 : 1;
}

// A host in QML: all that it needs of C++.
#include "../sandbox.h"

#include <QGuiApplication>
#include <QQmlApplicationEngine>

int main(int argc, char *argv[])
{
    QGuiApplication application(argc, argv);
    // The library keeps its settings among the application's own, which need these names.
    QCoreApplication::setOrganizationName(QStringLiteral("Example"));
    QCoreApplication::setApplicationName(QStringLiteral("qml-host"));

    useSandbox(application.arguments());
    ZNTAdsSDK::registerWithAppId(
        QStringLiteral("demo-app"), QStringLiteral("demo-media"), QStringLiteral("demo-secret"));

    const QQmlApplicationEngine engine(QUrl(QStringLiteral("qrc:/Main.qml")));
    return engine.rootObjects().isEmpty() ? 1 : QGuiApplication::exec();
}

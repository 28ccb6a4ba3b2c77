// A host in QML: a splash ad at the start, over a list with feed ads.
#include "../sandbox.h"
#include "ads.h"

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

    Ads ads;
    QQmlApplicationEngine engine;
    engine.setInitialProperties({{QStringLiteral("ads"), QVariant::fromValue(&ads)}});
    engine.load(QUrl(QStringLiteral("qrc:/Main.qml")));
    if (engine.rootObjects().isEmpty())
        return 1;
    ads.start(qobject_cast<QQuickWindow *>(engine.rootObjects().constFirst()));
    return QGuiApplication::exec();
}

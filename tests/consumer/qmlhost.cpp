// A host in QML: qmlhost [VIDEO_URL]. It ends when the video has been seen, or without one half a
// second after the creative was made, as does the host that uses the library from QML alone.
#include "host.h"

#include <QQmlComponent>
#include <QQmlEngine>

#include <memory>

#ifdef SHOWS_VIDEO
#include <ZNTAds/ZNTLogManager.h>
#include <ZNTAds/ZNTShakeAdView.h>

static void prepare()
{
    ZNTLogManager::sharedInstance()->setLogEnabled(true);
}

static void showVideo(QObject *creative, const QString &url)
{
    auto *view = qobject_cast<ZNTShakeAdView *>(creative);
    view->setupWithVideoUrl(url, {});
    QObject::connect(view, &ZNTSplashAdView::hiddenChanged, view,
        [] { finish(hasLoaded("libQt6Multimedia.so") && hasLoaded("libQt6Sensors.so")); });
}
#else
static void prepare()
{
}
static void showVideo(QObject *, const QString &)
{
}
#endif

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    prepare();
    QQmlEngine engine;
    QQmlComponent component(&engine, QUrl::fromLocalFile(QStringLiteral(MAIN_QML)));
    const std::unique_ptr<QObject> window(component.create());
    if (!window) {
        qWarning("%s", qPrintable(component.errorString()));
        return 3;
    }
    if (const QString url = application.arguments().value(1); !url.isEmpty())
        showVideo(window->findChild<QObject *>(QStringLiteral("creative")), url);
    else
        QTimer::singleShot(500, &application, [] { finish(true); });
    return runHost();
}

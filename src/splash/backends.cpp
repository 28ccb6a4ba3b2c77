#include "splash/backends.h"

#include "diagnostics/log.h"
#include "splash/motionbackend.h"
#include "splash/videobackend.h"
#include "support/mainthread.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QPluginLoader>

#include <atomic>

#ifdef Q_OS_UNIX
#include <dlfcn.h>
#endif

#ifdef ZNTADS_LINKED_VIDEO
extern const QStaticPlugin qt_static_plugin_ZNTAdsVideoPlugin();
#endif
#ifdef ZNTADS_LINKED_MOTION
extern const QStaticPlugin qt_static_plugin_ZNTAdsMotionPlugin();
#endif

namespace znt {

namespace {

struct Plugin
{
    const char *file;
    const char *purpose;
    const QStaticPlugin (*linked)();
};

constexpr Plugin videoPlugin{ZNTADS_VIDEO_PLUGIN, "play videos",
#ifdef ZNTADS_LINKED_VIDEO
    &qt_static_plugin_ZNTAdsVideoPlugin
#else
    nullptr
#endif
};

constexpr Plugin motionPlugin{ZNTADS_MOTION_PLUGIN, "sense motion",
#ifdef ZNTADS_LINKED_MOTION
    &qt_static_plugin_ZNTAdsMotionPlugin
#else
    nullptr
#endif
};

// The library's own plugins come first: they fit it. An application that is deployed with its
// libraries has plugins elsewhere.
QStringList pluginFolders()
{
    QStringList folders;
#ifdef Q_OS_UNIX
    Dl_info library;
    if (dladdr(reinterpret_cast<const void *>(&withVideoBackend), &library))
        folders << QFileInfo(QFile::decodeName(library.dli_fname)).canonicalPath()
                + QStringLiteral("/" ZNTADS_PLUGIN_FOLDER);
#endif
    for (const QString &path : QCoreApplication::libraryPaths())
        folders << path + QStringLiteral("/zntads");
    return folders;
}

// Once loaded, a plugin is never unloaded.
QObject *loadPlugin(const Plugin &plugin)
{
    if (plugin.linked)
        return plugin.linked().instance();
    const QString file = QString::fromLatin1(plugin.file);
    QString fault = file + QStringLiteral(" is missing");
    for (const QString &folder : pluginFolders()) {
        const QString path = folder + u'/' + file;
        if (!QFileInfo::exists(path))
            continue;
        QPluginLoader loader(path);
        if (QObject *object = loader.instance())
            return object;
        fault = loader.errorString();
    }
    logWarning("Cannot %1: %2", QString::fromLatin1(plugin.purpose), fault);
    return nullptr;
}

template <class Backend>
Backend *backendOf(const Plugin &plugin)
{
    static Backend *const backend = [&plugin] {
        QObject *object = loadPlugin(plugin);
        endBeforeLoaded();
        return qobject_cast<Backend *>(object);
    }();
    return backend;
}

template <class Backend>
void withBackend(const Plugin &plugin, const QPointer<QObject> &receiver,
    const std::function<void(Backend &)> &then)
{
    static Q_CONSTINIT std::atomic<bool> isLoaded{false};
    const auto use = [then](Backend *backend) {
        if (backend)
            then(*backend);
    };
    const auto load = [&plugin] {
        Backend *backend = backendOf<Backend>(plugin);
        isLoaded = true;
        return backend;
    };
    if (isLoaded && isMainThread())
        use(load());
    else
        inPool(receiver, load, use);
}

} // namespace

void withVideoBackend(
    const QPointer<QObject> &receiver, const std::function<void(VideoBackend &)> &then)
{
    withBackend(videoPlugin, receiver, then);
}

void withMotionBackend(
    const QPointer<QObject> &receiver, const std::function<void(MotionBackend &)> &then)
{
    withBackend(motionPlugin, receiver, then);
}

} // namespace znt

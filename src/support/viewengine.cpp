#include "support/viewengine.h"

#include <QGuiApplication>
#include <QImageReader>
#include <QPainter>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QSemaphore>
#include <QThreadPool>

#include <atomic>
#include <memory>

namespace znt {

namespace {

void fill(QQuickItem *looks, const QQuickItem *view)
{
    const auto follow = [looks, view] { looks->setSize(view->size()); };
    QObject::connect(view, &QQuickItem::widthChanged, looks, follow);
    QObject::connect(view, &QQuickItem::heightChanged, looks, follow);
    follow();
}

class ViewEngine
{
public:
    void prepare(const QString &name)
    {
        if (!m_components.contains(name))
            load(name, QQmlComponent::Asynchronous);
    }

    QQmlComponent *component(const QString &name)
    {
        QQmlComponent *known = m_components.value(name);
        return known && !known->isLoading() ? known : load(name, QQmlComponent::PreferSynchronous);
    }

    QQuickItem *create(const QString &name, QQuickItem *view)
    {
        QQmlComponent *source = component(name);
        std::unique_ptr<QObject> root(source->beginCreate(m_engine.rootContext()));
        auto *looks = qobject_cast<QQuickItem *>(root.get());
        if (!looks) {
            qWarning("%ls", qUtf16Printable(source->errorString()));
            return nullptr;
        }
        looks->setParent(view);
        looks->setParentItem(view);
        fill(looks, view);
        source->setInitialProperties(
            looks, {{QStringLiteral("view"), QVariant::fromValue<QObject *>(view)}});
        source->completeCreate();
        root.release();
        return looks;
    }

private:
    QQmlComponent *load(const QString &name, QQmlComponent::CompilationMode mode)
    {
        const QUrl url(QStringLiteral("qrc:/qt-project.org/imports/ZNTAds/%1.qml").arg(name));
        auto *component = new QQmlComponent(&m_engine, url, mode, &m_engine);
        m_components.insert(name, component);
        return component;
    }

    QQmlEngine m_engine;
    QHash<QString, QQmlComponent *> m_components;
};

ViewEngine *engine = nullptr;

void endEngine()
{
    delete std::exchange(engine, nullptr);
}

ViewEngine *startedEngine()
{
    if (!engine && QCoreApplication::instance()) {
        engine = new ViewEngine;
        qAddPostRoutine(endEngine);
    }
    return engine;
}

void readFontsAndPictureFormats()
{
    QImage page(16, 16, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&page);
    painter.setFont(QFont(QStringLiteral("Noto Sans CJK SC"))); // the labels'
    painter.drawText(page.rect(), QStringLiteral("广A"));
    QImageReader::supportedImageFormats();
}

} // namespace

void warmUpLooks()
{
    static std::atomic_flag warm;
    // Not qGuiApp, which is set by an application without windows too.
    if (!qobject_cast<QGuiApplication *>(QCoreApplication::instance()) || warm.test_and_set())
        return;
    static QSemaphore read;
    qAddPostRoutine([] { read.acquire(); }); // fonts go with the application
    QThreadPool::globalInstance()->start([] {
        readFontsAndPictureFormats();
        read.release();
    });
}

void prepareLooks(const QString &name)
{
    // The first one makes the engine, which is enough for one turn of the event loop.
    QMetaObject::invokeMethod(
        qApp,
        [name] {
            if (ViewEngine *with = startedEngine())
                with->prepare(name);
        },
        Qt::QueuedConnection);
}

QQuickItem *createLooks(QQuickItem *view, const QString &name)
{
    ViewEngine *with = startedEngine();
    return with ? with->create(name, view) : nullptr;
}

} // namespace znt

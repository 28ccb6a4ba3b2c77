#include "ui/qmlpart.h"

#include "support/mainthread.h"

#include <QGuiApplication>
#include <QImageReader>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QTextLayout>
#include <QTimer>

#include <functional>
#include <memory>

namespace znt {

namespace {

void fill(QQuickItem *root, const QQuickItem *view)
{
    const auto follow = [root, view] { root->setSize(view->size()); };
    QObject::connect(view, &QQuickItem::widthChanged, root, follow);
    QObject::connect(view, &QQuickItem::heightChanged, root, follow);
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

    QQuickItem *create(const QString &name, QQuickItem *view, const QVariantMap &properties)
    {
        QQmlComponent *source = component(name);
        std::unique_ptr<QObject> object(source->beginCreate(m_engine.rootContext()));
        auto *root = qobject_cast<QQuickItem *>(object.get());
        if (!root) {
            qWarning("%ls", qUtf16Printable(source->errorString()));
            return nullptr;
        }
        root->setParent(view);
        root->setParentItem(view);
        fill(root, view);
        source->setInitialProperties(root, properties);
        source->completeCreate();
        object.release();
        return root;
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

// What Qt reads at its first use in a process and the first part would otherwise wait for.
void readFonts()
{
    QFont font(QStringLiteral("Noto Sans CJK SC")); // the labels'
    font.setPixelSize(17);
    QTextLayout layout(QStringLiteral("广A"), font);
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
}

void readPictureFormats()
{
    QImageReader::supportedImageFormats();
}

// Each step in an event-loop iteration of its own.
void takeTurns(const QList<std::function<void()>> &steps)
{
    if (steps.isEmpty())
        return;
    QTimer::singleShot(0, QCoreApplication::instance(), [steps] {
        steps.first()();
        endBeforeLoaded();
        takeTurns(steps.mid(1));
    });
}

ViewEngine *engine()
{
    return canShowViews() ? ofApplication<ViewEngine>() : nullptr;
}

} // namespace

QmlPart::QmlPart(QQuickItem *view, const QString &name, QVariantMap properties)
{
    properties.insert(QStringLiteral("part"), QVariant::fromValue<QObject *>(this));
    if (ViewEngine *with = engine())
        m_root = with->create(name, view, properties);
}

QmlPart::~QmlPart()
{
    delete m_root;
}

QQuickItem *QmlPart::subview(const char *objectName) const
{
    auto *item = m_root ? m_root->findChild<QQuickItem *>(QLatin1String(objectName)) : nullptr;
    if (m_root && !item)
        qWarning("%s has no subview %s", m_root->metaObject()->className(), objectName);
    return item;
}

void QmlPart::tap()
{
    QMetaObject::invokeMethod(this, &QmlPart::tapped, Qt::QueuedConnection);
}

void QmlPart::pan(QPointF translation, QPointF velocity)
{
    QMetaObject::invokeMethod(
        this, [=, this] { Q_EMIT panned(translation, velocity); }, Qt::QueuedConnection);
}

void QmlPart::close()
{
    QMetaObject::invokeMethod(this, &QmlPart::closeRequested, Qt::QueuedConnection);
}

bool canShowViews()
{
    return qobject_cast<QGuiApplication *>(QCoreApplication::instance());
}

void prepareQmlPart(const QString &name)
{
    onMainThread([name] {
        if (engine())
            takeTurns({[name] { engine()->prepare(name); }, readFonts, readPictureFormats});
    });
}

} // namespace znt

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

    QQuickItem *create(const QString &name, QQuickItem *view, QVariantMap properties)
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
        properties.insert(QStringLiteral("view"), QVariant::fromValue<QObject *>(view));
        source->setInitialProperties(looks, properties);
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

// What Qt reads at its first use in a process and the first looks would otherwise wait for.
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

// Each step in a turn of the event loop of its own.
void takeTurns(const QList<std::function<void()>> &steps)
{
    if (steps.isEmpty())
        return;
    QTimer::singleShot(0, QCoreApplication::instance(), [steps] {
        steps.first()();
        takeTurns(steps.mid(1));
    });
}

} // namespace

void prepareLooks(const QString &name)
{
    if (!qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        return;
    takeTurns(
        {[name] { ofApplication<ViewEngine>()->prepare(name); }, readFonts, readPictureFormats});
}

QQuickItem *createLooks(QQuickItem *view, const QString &name, QVariantMap properties)
{
    ViewEngine *with = ofApplication<ViewEngine>();
    return with ? with->create(name, view, std::move(properties)) : nullptr;
}

} // namespace znt

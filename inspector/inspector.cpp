#include <ZNTAdsInspector/ZNTInspector.h>

#include "inspectedads.h"

#include <ZNTAdsInspector/ZNTAdExplanation.h>

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>

#include <memory>

using namespace znt::inspector;

// Outside of any namespace, as the macro wants it.
static void loadResources()
{
    Q_INIT_RESOURCE(inspector);
}

namespace {

const QUrl panel(QStringLiteral("qrc:/ZNTAds/Inspector/AdInspector.qml"));

} // namespace

void ZNTInspector::registerTypes()
{
    loadResources();
    constexpr char uri[] = "ZNTAds.Inspector";
    qmlRegisterType<ZNTAdJournal>(uri, 1, 0, "AdJournal");
    qmlRegisterType<ZNTAdExplanation>(uri, 1, 0, "AdExplanation");
    qmlRegisterType<InspectedAds>(uri, 1, 0, "InspectedAds");
    qmlRegisterType<AdEvents>(uri, 1, 0, "AdEvents");
    qmlRegisterType(panel, uri, 1, 0, "AdInspector");
}

QQuickItem *ZNTInspector::attach(QQuickWindow *window)
{
    if (!window)
        return nullptr;
    registerTypes();
    auto engine = std::make_unique<QQmlEngine>();
    QQmlComponent component(engine.get(), panel);
    auto *item = qobject_cast<QQuickItem *>(component.create());
    if (!item) {
        qWarning("ZNTInspector: %s", qPrintable(component.errorString()));
        return nullptr;
    }
    QQuickItem *content = window->contentItem();
    item->setParent(content);
    item->setParentItem(content);
    // It goes after its item.
    QQmlEngine *const kept = engine.release();
    QObject::connect(item, &QObject::destroyed, kept, &QObject::deleteLater);
    return item;
}

#include <ZNTAds/ZNTFeedAdItem.h>

#include "ads/negativefeedback.h"
#include "diagnostics/log.h"
#include "feed/feedclick.h"
#include "feed/templates.h"
#include "qml/feedad.h"

#include <ZNTAds/ZNTFeedAdView.h>

#include <QGuiApplication>
#include <QPalette>
#include <QSGSimpleRectNode>

using namespace znt;

struct ZNTFeedAdItem::Private
{
    explicit Private(ZNTFeedAdItem *item)
        : q(item)
    {
    }

    void showTemplate();
    void makeTemplate();
    void watch();
    void unwatch();

    ZNTFeedAdItem *const q;
    ZNTFeedAd ad;
    QColor color;     // invalid unless the host has set one
    qint64 style = 0; // of the view
    std::unique_ptr<ZNTFeedAdView> view;
    QMetaObject::Connection exposures;
};

ZNTFeedAdItem::ZNTFeedAdItem(QQuickItem *parent)
    : QQuickItem(parent)
    , d(std::make_unique<Private>(this))
{
    setFlag(ItemHasContents);
}

ZNTFeedAdItem::~ZNTFeedAdItem()
{
    d->unwatch();
    d->view.reset();
}

ZNTFeedAd ZNTFeedAdItem::ad() const
{
    return d->ad;
}

void ZNTFeedAdItem::setAd(const ZNTFeedAd &ad)
{
    if (d->ad == ad)
        return;
    const bool wasSeen = isSeen();
    d->unwatch();
    d->ad = ad;
    d->showTemplate();
    d->watch();
    const QPointer<ZNTFeedAdItem> self(this);
    Q_EMIT adChanged();
    if (self && wasSeen != isSeen())
        Q_EMIT seenChanged();
}

QVariant ZNTFeedAdItem::adDataVariant() const
{
    return QVariant::fromValue(d->ad);
}

void ZNTFeedAdItem::setAdDataVariant(const QVariant &adData)
{
    setAd(adData.value<ZNTFeedAd>());
}

bool ZNTFeedAdItem::isSeen() const
{
    return d->ad.isSeen();
}

QColor ZNTFeedAdItem::color() const
{
    if (d->color.isValid())
        return d->color;
    const QPalette palette = QGuiApplication::palette();
    const bool isDark = palette.color(QPalette::Window).lightness()
        < palette.color(QPalette::WindowText).lightness();
    return isDark ? Qt::white : Qt::transparent;
}

void ZNTFeedAdItem::setColor(const QColor &color)
{
    if (d->color == color)
        return;
    d->color = color;
    update();
    Q_EMIT colorChanged();
}

void ZNTFeedAdItem::resetColor()
{
    setColor({});
}

ZNTFeedAdView *ZNTFeedAdItem::adView() const
{
    return d->view.get();
}

// The same template serves another record of its style.
void ZNTFeedAdItem::Private::showTemplate()
{
    if (!ad.isValid() || !view || style != ad.style())
        makeTemplate();
    if (!view)
        return;
    view->setupWithAdsData(ad.adData());
    view->setParentItem(q); // when it is filled
}

void ZNTFeedAdItem::Private::makeTemplate()
{
    style = ad.style();
    q->update();
    view.reset(ad.isValid() ? createTemplate(style) : nullptr);
    q->setImplicitSize(0, 0);
    if (!view)
        return;
    view->setDelegate(q);
    view->setSize(q->size());
    QObject::connect(view.get(), &QQuickItem::implicitHeightChanged, q,
        [this] { q->setImplicitSize(view->implicitWidth(), view->implicitHeight()); });
}

void ZNTFeedAdItem::Private::watch()
{
    ZNTFeedManager *const manager = ad.manager();
    if (!view || !manager || !q->window() || ad.isSeen())
        return;
    QObject::disconnect(exposures);
    exposures = QObject::connect(
        manager, &ZNTFeedManager::rendered, q, [this](const ZNTFeedAdDataPtr &adData) {
            if (adData != ad.adData() || std::exchange(ad.d->isSeen, true))
                return;
            const QPointer<ZNTFeedAdItem> self(q);
            Q_EMIT self->seenChanged();
            if (self)
                Q_EMIT self->rendered();
        });
    manager->registerAdForView(view.get(), ad.adData());
}

// A list may have given the record to another row already.
void ZNTFeedAdItem::Private::unwatch()
{
    QObject::disconnect(exposures);
    ZNTFeedManager *const manager = ad.manager();
    if (manager && view && manager->registeredViews().value(ad.adData().get()) == view.get())
        manager->unregisterAdData(ad.adData());
}

void ZNTFeedAdItem::adViewDidClick()
{
    logInfo("Feed ad clicked");
    const ZNTFeedAdDataPtr clickedAd = d->ad.adData(); // the host may give the item another
    const QPointer<ZNTFeedAdItem> self(this);
    Q_EMIT clicked();
    if (!clickedAd)
        return;
    followClick(*clickedAd, [self] {
        if (self)
            Q_EMIT self->targetOpened();
    });
}

void ZNTFeedAdItem::adViewDidClose()
{
    logInfo("Feed ad closed");
    if (d->ad.isValid())
        sendNegativeFeedback(d->ad.adId());
    Q_EMIT closed();
}

void ZNTFeedAdItem::adViewDidExposure(QQuickItem *view)
{
    Q_UNUSED(view)
    logInfo("Feed ad exposed");
    Q_EMIT appeared();
}

void ZNTFeedAdItem::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (d->view)
        d->view->setSize(newGeometry.size());
    update();
}

void ZNTFeedAdItem::itemChange(ItemChange change, const ItemChangeData &data)
{
    QQuickItem::itemChange(change, data);
    if (change == ItemSceneChange && data.window)
        d->watch();
}

QSGNode *ZNTFeedAdItem::updatePaintNode(QSGNode *node, UpdatePaintNodeData *data)
{
    Q_UNUSED(data)
    const QColor ground = color();
    if (!d->view || ground.alpha() == 0) {
        delete node;
        return nullptr;
    }
    auto *rectangle = static_cast<QSGSimpleRectNode *>(node);
    if (!rectangle)
        rectangle = new QSGSimpleRectNode;
    rectangle->setRect(boundingRect());
    rectangle->setColor(ground);
    return rectangle;
}

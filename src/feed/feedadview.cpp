#include <ZNTAds/ZNTFeedAdView.h>

#include "ads/adcontent.h"
#include "feed/feedroot.h"
#include "ui/qmlpart.h"

#include <ZNTAds/ZNTFeedManager.h>

using namespace znt;

struct ZNTFeedAdView::Private
{
    QString partName;
    ZNTDelegateRef<ZNTAdViewDelegate> delegate;
    AdContent content;
    bool isInteractive = false;
    int watchedArrivals = 0; // whose notice is still to come
    std::unique_ptr<QmlPart> part;
};

ZNTFeedAdView::ZNTFeedAdView(const QString &part, QQuickItem *parent)
    : QQuickItem(parent)
    , d(std::make_unique<Private>())
{
    d->partName = part;
    setFlag(ItemIsFocusScope);
    connect(this, &ZNTFeedAdView::tapped, this, &ZNTFeedAdView::adViewTapped);
    connect(this, &ZNTFeedAdView::closeRequested, this, &ZNTFeedAdView::closeButtonClicked);
    connect(&d->content, &AdContent::changed, this, &ZNTFeedAdView::contentChanged);
    connect(&d->content, &AdContent::pictureChanged, this, &ZNTFeedAdView::pictureChanged);
    connect(&d->content, &AdContent::logoChanged, this, &ZNTFeedAdView::logoChanged);
}

ZNTFeedAdView::~ZNTFeedAdView() = default;

// Not before there is something to see: by then size and texts are known, and are laid out once.
void ZNTFeedAdView::createPart()
{
    if (d->part)
        return;
    d->part = std::make_unique<QmlPart>(this, d->partName,
        QVariantMap{{QStringLiteral("view"), QVariant::fromValue<QObject *>(this)},
            {QStringLiteral("content"), QVariant::fromValue(&d->content)}});
    connect(d->part.get(), &QmlPart::tapped, this, &ZNTFeedAdView::tapped);
    connect(d->part.get(), &QmlPart::closeRequested, this, &ZNTFeedAdView::closeRequested);
    if (!d->part->root())
        return;
    connect(d->part->root(), &QQuickItem::implicitHeightChanged, this,
        &ZNTFeedAdView::updateImplicitSize);
    updateImplicitSize();
}

void ZNTFeedAdView::setDelegate(const ZNTDelegateRef<ZNTAdViewDelegate> &delegate)
{
    d->delegate = delegate;
}

ZNTDelegateRef<ZNTAdViewDelegate> ZNTFeedAdView::delegate() const
{
    return d->delegate;
}

void ZNTFeedAdView::setupWithAdsData(const ZNTFeedAdDataPtr &adData)
{
    if (!adData)
        return;
    d->isInteractive = true;
    d->content.startOver();
    d->content.setText(adData->title());
    d->content.setSource(adData->source());
    d->content.clearPicture();
    const QString pictureUrl = adData->imageUrls().value(0);
    d->content.fetchPicture(pictureUrl);
    d->content.fetchLogo(!adData->sourceLogo().isNull(), adData->sourceLogo(), pictureUrl);
    createPart();
}

QString ZNTFeedAdView::title() const
{
    return d->content.text();
}

QString ZNTFeedAdView::source() const
{
    return d->content.source();
}

bool ZNTFeedAdView::showsLogo() const
{
    return d->content.hasLogo();
}

bool ZNTFeedAdView::isInteractive() const
{
    return d->isInteractive;
}

QImage ZNTFeedAdView::picture() const
{
    return d->content.picture();
}

QImage ZNTFeedAdView::logo() const
{
    return d->content.logo();
}

void ZNTFeedAdView::adViewTapped()
{
    if (ZNTAdViewDelegate *delegate = d->delegate.get())
        delegate->adViewDidClick();
}

void ZNTFeedAdView::closeButtonClicked()
{
    if (ZNTAdViewDelegate *delegate = d->delegate.get())
        delegate->adViewDidClose();
}

void ZNTFeedAdView::notifyArrival()
{
    if (ZNTAdViewDelegate *delegate = d->delegate.get())
        delegate->adViewDidExposure(this);
}

bool ZNTFeedAdView::takeArrival()
{
    return d->watchedArrivals > 0 && d->watchedArrivals--;
}

void ZNTFeedAdView::updateImplicitSize()
{
    const QQuickItem *root = d->part->root();
    setImplicitSize(root->implicitWidth(), root->implicitHeight());
}

void ZNTFeedAdView::itemChange(ItemChange change, const ItemChangeData &data)
{
    QQuickItem::itemChange(change, data);
    if (change != ItemSceneChange || !data.window)
        return;
    createPart();
    if (auto *manager = qobject_cast<ZNTFeedManager *>(d->delegate.object())) {
        ++d->watchedArrivals;
        manager->viewArrived(this);
    }
    // Queued: the host must not be called in the middle of a move.
    QMetaObject::invokeMethod(this, &ZNTFeedAdView::notifyArrival, Qt::QueuedConnection);
}

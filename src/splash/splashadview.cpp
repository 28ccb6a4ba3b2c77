#include <ZNTAds/ZNTSplashAdView.h>

#include "splash/splashcontent.h"
#include "ui/covering.h"
#include "ui/qmlpart.h"

using namespace znt;

struct ZNTSplashAdView::Private
{
    explicit Private(ZNTSplashAdView *view)
        : covering(view)
    {
    }

    ZNTDelegateRef<ZNTSplashDelegate> delegate;
    SplashContent content;
    Covering covering;
    QPointer<QQuickItem> skipButton;
    std::unique_ptr<QmlPart> part;
};

ZNTSplashAdView::ZNTSplashAdView(const QString &part, QQuickItem *parent)
    : QQuickItem(parent)
    , d(std::make_unique<Private>(this))
{
    setVisible(false);
    setFlag(ItemIsFocusScope);
    d->part = std::make_unique<QmlPart>(
        this, part, QVariantMap{{QStringLiteral("content"), QVariant::fromValue(&d->content)}});
    d->skipButton = d->part->subview("skipButton");
    d->content.setSafeInsets(d->covering.safeInsets());
    connect(&d->content, &SplashContent::readyChanged, this, &ZNTSplashAdView::updateHidden);
    connect(&d->content, &SplashContent::modeChanged, this, &ZNTSplashAdView::contentChanged);
    connect(
        &d->content, &SplashContent::safeInsetsChanged, this, &ZNTSplashAdView::safeInsetsChanged);
    connect(&d->covering, &Covering::safeInsetsChanged, &d->content,
        [this] { d->content.setSafeInsets(d->covering.safeInsets()); });
    connect(&d->covering, &Covering::closeKeyPressed, d->part.get(), &QmlPart::close);
    connect(d->part.get(), &QmlPart::tapped, this, &ZNTSplashAdView::handleTap);
    connect(d->part.get(), &QmlPart::panned, this, &ZNTSplashAdView::handlePanGesture);
    connect(d->part.get(), &QmlPart::closeRequested, this, &ZNTSplashAdView::skipClicked);
}

ZNTSplashAdView::~ZNTSplashAdView() = default;

bool ZNTSplashAdView::isHidden() const
{
    return !d->content.isReady();
}

bool ZNTSplashAdView::isVideoAd() const
{
    return d->content.isVideo();
}

qreal ZNTSplashAdView::safeTop() const
{
    return d->content.safeTop();
}

qreal ZNTSplashAdView::safeBottom() const
{
    return d->content.safeBottom();
}

void ZNTSplashAdView::setDelegate(const ZNTDelegateRef<ZNTSplashDelegate> &delegate)
{
    d->delegate = delegate;
}

void ZNTSplashAdView::setupWithImageUrl(const QString &imageUrl, const QString &actionTip,
    const QString &source, const QString &sourceLogo)
{
    d->content.showPicture(imageUrl, actionTip, source, sourceLogo);
}

void ZNTSplashAdView::setupWithVideoUrl(const QString &videoUrl, const QString &actionTip)
{
    Q_UNUSED(actionTip)
    d->content.showVideo(videoUrl);
}

void ZNTSplashAdView::updateSkipButtonWithTime(qint64 seconds)
{
    d->content.setSkipTitle(seconds >= 1 ? QCoreApplication::translate("ZNTAds", "%1s").arg(seconds)
                                         : QCoreApplication::translate("ZNTAds", "跳过"));
}

QQuickItem *ZNTSplashAdView::skipButton() const
{
    return d->skipButton;
}

void ZNTSplashAdView::handleAdClick()
{
    if (ZNTSplashDelegate *delegate = d->delegate.get())
        delegate->handleAdClick();
}

void ZNTSplashAdView::handleTap()
{
    handleAdClick();
}

void ZNTSplashAdView::handlePanGesture(const QPointF &translation, const QPointF &velocity)
{
    Q_UNUSED(translation)
    Q_UNUSED(velocity)
}

void ZNTSplashAdView::updateHidden()
{
    setVisible(!isHidden());
    d->covering.setActive(!isHidden());
    Q_EMIT hiddenChanged();
}

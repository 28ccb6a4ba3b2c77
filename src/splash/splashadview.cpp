#include <ZNTAds/ZNTSplashAdView.h>

#include "splash/splashcontent.h"
#include "ui/focusloan.h"
#include "ui/qmlpart.h"
#include "ui/safearea.h"

#include <QQuickWindow>

using znt::SafeArea;
using znt::SplashContent;

struct ZNTSplashAdView::Private
{
    SplashContent content{nullptr};
    ZNTDelegateRef<ZNTSplashDelegate> delegate;
    znt::FocusLoan focus;
    QMarginsF safeInsets;
    QQuickItem *looks = nullptr;
};

ZNTSplashAdView::ZNTSplashAdView(const QString &looks, QQuickItem *parent)
    : QQuickItem(parent)
    , d(std::make_unique<Private>())
{
    setVisible(false);
    setFlag(ItemIsFocusScope);
    connect(&d->content, &SplashContent::readyChanged, this, &ZNTSplashAdView::followContent);
    // Queued: whoever hears of it may destroy the creative, and must not do so inside an event that
    // one of its children is handling.
    connect(&d->content, &SplashContent::tapped, this, &ZNTSplashAdView::handleTap,
        Qt::QueuedConnection);
    connect(&d->content, &SplashContent::panned, this, &ZNTSplashAdView::handlePanGesture,
        Qt::QueuedConnection);
    connect(&d->content, &SplashContent::skipped, this, &ZNTSplashAdView::skipClicked,
        Qt::QueuedConnection);
    connect(&d->content, &SplashContent::changed, this, &ZNTSplashAdView::contentChanged,
        Qt::QueuedConnection);
    connect(SafeArea::instance(), &SafeArea::changed, this, &ZNTSplashAdView::updateSafeInsets);
    d->looks = znt::createLooks(
        this, looks, {{QStringLiteral("content"), QVariant::fromValue(&d->content)}});
}

ZNTSplashAdView::~ZNTSplashAdView()
{
    d->focus.giveBack();
    delete d->looks; // while what they read is still there
}

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
    return d->safeInsets.top();
}

qreal ZNTSplashAdView::safeBottom() const
{
    return d->safeInsets.bottom();
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
    d->content.setSkipTitle(
        seconds >= 1 ? QStringLiteral("%1s").arg(seconds) : QStringLiteral("跳过"));
}

QQuickItem *ZNTSplashAdView::skipButton() const
{
    return d->looks ? d->looks->findChild<QQuickItem *>(QStringLiteral("skipButton")) : nullptr;
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

void ZNTSplashAdView::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    updateSafeInsets();
}

void ZNTSplashAdView::itemChange(ItemChange change, const ItemChangeData &data)
{
    QQuickItem::itemChange(change, data);
    if (change == ItemSceneChange)
        data.window ? enter(data.window) : d->focus.giveBack();
    if (change == ItemParentHasChanged)
        updateSafeInsets();
}

void ZNTSplashAdView::enter(QQuickWindow *window)
{
    for (const auto sizeChanged : {&QQuickWindow::widthChanged, &QQuickWindow::heightChanged})
        connect(
            window, sizeChanged, this, &ZNTSplashAdView::updateSafeInsets, Qt::UniqueConnection);
    updateSafeInsets();
    // Queued: Qt is in the middle of a move, at whose end it settles the focus itself.
    QMetaObject::invokeMethod(this, &ZNTSplashAdView::takeFocus, Qt::QueuedConnection);
}

void ZNTSplashAdView::keyPressEvent(QKeyEvent *event)
{
    event->setAccepted(event->key() == Qt::Key_Escape);
    if (event->isAccepted())
        Q_EMIT d->content.skipped();
}

void ZNTSplashAdView::followContent()
{
    setVisible(!isHidden());
    isHidden() ? d->focus.giveBack() : takeFocus();
    Q_EMIT hiddenChanged();
}

void ZNTSplashAdView::takeFocus()
{
    if (!isHidden())
        d->focus.lend(this);
}

void ZNTSplashAdView::updateSafeInsets()
{
    const QMarginsF insets = znt::safeInsetsOf(this);
    if (std::exchange(d->safeInsets, insets) != insets)
        Q_EMIT safeInsetsChanged();
}

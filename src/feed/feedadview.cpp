#include <ZNTAds/ZNTFeedAdView.h>

#include "feed/feedroot.h"
#include "net/remoteimage.h"
#include "ui/qmlpart.h"

using znt::FeedRoot;

namespace {

// Longer texts are laid out whole before they are cut, which takes its time.
constexpr qsizetype mostCharacters = 300;

QString shortened(const QString &text)
{
    if (text.size() <= mostCharacters)
        return text;
    const bool splitsPair = text.at(mostCharacters - 1).isHighSurrogate();
    return text.left(mostCharacters - (splitsPair ? 1 : 0));
}

} // namespace

struct ZNTFeedAdView::Private
{
    QString looksName;
    ZNTDelegateRef<ZNTAdViewDelegate> delegate;
    FeedRoot *looks = nullptr;
    QString title;
    QString source = QStringLiteral("广告");
    QImage picture;
    QImage logo;
    bool showsLogo = false;
    // Counts the setups, so that what an earlier one has ordered is not shown.
    int setups = 0;
};

ZNTFeedAdView::ZNTFeedAdView(const QString &looks, QQuickItem *parent)
    : QQuickItem(parent)
    , d(std::make_unique<Private>())
{
    d->looksName = looks;
    setFlag(ItemIsFocusScope);
    connect(this, &ZNTFeedAdView::tapped, this, &ZNTFeedAdView::adViewTapped);
    connect(this, &ZNTFeedAdView::closeRequested, this, &ZNTFeedAdView::closeButtonClicked);
}

ZNTFeedAdView::~ZNTFeedAdView()
{
    delete d->looks; // while what they read is still there
}

// Not before there is something to see: by then size and texts are known, and are laid out once.
void ZNTFeedAdView::createLooks()
{
    if (d->looks)
        return;
    d->looks = qobject_cast<FeedRoot *>(znt::createLooks(this, d->looksName));
    if (!d->looks)
        return;
    // Queued, as the taps are: whoever hears of it may destroy the template, and must not do so
    // inside an event that the looks are handling.
    connect(d->looks, &FeedRoot::closeRequested, this, &ZNTFeedAdView::closeRequested,
        Qt::QueuedConnection);
    connect(d->looks, &QQuickItem::implicitHeightChanged, this, &ZNTFeedAdView::takeImplicitSize);
    takeImplicitSize();
}

void ZNTFeedAdView::acceptTaps()
{
    if (!d->looks)
        return;
    d->looks->setAcceptedMouseButtons(Qt::LeftButton);
    connect(d->looks, &FeedRoot::tapped, this, &ZNTFeedAdView::tapped,
        Qt::ConnectionType(Qt::QueuedConnection | Qt::UniqueConnection));
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
    ++d->setups;
    d->title = shortened(adData->title());
    d->source = adData->source().isEmpty() ? QStringLiteral("广告") : shortened(adData->source());
    d->showsLogo = !adData->sourceLogo().isNull();
    Q_EMIT contentChanged();
    createLooks();
    acceptTaps();
    load(adData->imageUrls().value(0), d->picture, &ZNTFeedAdView::pictureChanged);
    load(adData->sourceLogo(), d->logo, &ZNTFeedAdView::logoChanged);
}

void ZNTFeedAdView::load(const QString &url, QImage &image, void (ZNTFeedAdView::*changed)())
{
    if (!image.isNull()) {
        image = {};
        Q_EMIT(this->*changed)();
    }
    if (url.isEmpty())
        return;
    znt::fetchImage(url, this, [this, &image, changed, setup = d->setups](const QImage &arrived) {
        if (setup != d->setups)
            return;
        image = arrived;
        Q_EMIT(this->*changed)();
    });
}

QString ZNTFeedAdView::title() const
{
    return d->title;
}

QString ZNTFeedAdView::source() const
{
    return d->source;
}

bool ZNTFeedAdView::showsLogo() const
{
    return d->showsLogo;
}

bool ZNTFeedAdView::isInteractive() const
{
    return d->setups > 0;
}

QImage ZNTFeedAdView::picture() const
{
    return d->picture;
}

QImage ZNTFeedAdView::logo() const
{
    return d->logo;
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

void ZNTFeedAdView::tellArrival()
{
    if (ZNTAdViewDelegate *delegate = d->delegate.get())
        delegate->adViewDidExposure(this);
}

void ZNTFeedAdView::takeImplicitSize()
{
    setImplicitSize(d->looks->implicitWidth(), d->looks->implicitHeight());
}

void ZNTFeedAdView::itemChange(ItemChange change, const ItemChangeData &data)
{
    QQuickItem::itemChange(change, data);
    if (change != ItemSceneChange || !data.window)
        return;
    createLooks();
    QMetaObject::invokeMethod(this, &ZNTFeedAdView::tellArrival, Qt::QueuedConnection);
}

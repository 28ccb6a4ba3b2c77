#include <ZNTAdsTesting/ZNTTestHand.h>

#include "expectation.h"

#include <ZNTAds/ZNTAdsSDK.h>
#include <ZNTAds/ZNTFeedAdView.h>
#include <ZNTAds/ZNTSplashAdView.h>
#include <ZNTAdsTesting/ZNTTestPointer.h>
#include <ZNTAdsTesting/ZNTTestSensors.h>

#include <QColor>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QPointer>
#include <QQuickItem>
#include <QWheelEvent>

#include <algorithm>

namespace {

constexpr int windowPatience = 2000; // milliseconds
constexpr int picturePatience = 5000;

const char *nameOf(ZNTTestHand::Ad ad)
{
    switch (ad) {
    case ZNTTestHand::InterstitialAd:
        return "interstitial ad";
    case ZNTTestHand::FeedAd:
        return "feed ad";
    case ZNTTestHand::SplashAd:
        break;
    }
    return "splash ad";
}

bool isAd(const QQuickItem *item, ZNTTestHand::Ad ad)
{
    switch (ad) {
    case ZNTTestHand::InterstitialAd: // whose type is the library's own
        return item->inherits("znt::InterstitialOverlay");
    case ZNTTestHand::FeedAd:
        return qobject_cast<const ZNTFeedAdView *>(item);
    case ZNTTestHand::SplashAd:
        break;
    }
    return qobject_cast<const ZNTSplashAdView *>(item);
}

// The item and all in it that fit, the nearest to the root first.
template <class Fits>
QList<QQuickItem *> itemsIn(QQuickItem *root, Fits fits)
{
    QList<QQuickItem *> all{root};
    for (qsizetype i = 0; i < all.size(); ++i)
        all += all.at(i)->childItems();
    all.removeIf([&fits](QQuickItem *item) { return !fits(item); });
    return all;
}

QPointF centreOf(const QQuickItem *item)
{
    return item->mapToScene(item->boundingRect().center());
}

// A part that is hidden needs none.
bool hasPictures(const QQuickItem *root)
{
    for (const char *condition : {"hasImage", "ready"}) {
        const QVariant holds = root->property(condition);
        if (holds.isValid() && !holds.toBool())
            return false;
    }
    const QList<QQuickItem *> children = root->childItems();
    return std::all_of(children.begin(), children.end(),
        [](const QQuickItem *child) { return !child->isVisible() || hasPictures(child); });
}

bool differs(QRgb one, QRgb other)
{
    constexpr int visible = 16;
    return std::abs(qRed(one) - qRed(other)) > visible
        || std::abs(qGreen(one) - qGreen(other)) > visible
        || std::abs(qBlue(one) - qBlue(other)) > visible;
}

// Of two pictures of one size, in percent.
double differingShare(const QImage &one, const QImage &other)
{
    int count = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x)
            count += differs(one.pixel(x, y), other.pixel(x, y)) ? 1 : 0;
    }
    return 100.0 * count / std::max(1, one.width() * one.height());
}

} // namespace

class ZNTTestHand::Private
{
public:
    // Does it with the ad, or with its part of that name; what is missing else.
    template <class Action>
    QString with(Ad ad, const QString &name, int index, Action action) const;

    QQuickItem *find(Ad ad, int index) const;
    QQuickItem *find(Ad ad, const QString &name, int index) const;
    // Does it with the window, and waits until it is on screen, or is no longer.
    template <class Action>
    QString withWindow(bool isShown, Action action) const;

    QPointer<QQuickWindow> window;
    std::unique_ptr<ZNTTestPointer> pointer;
    ZNTTestSensors sensors;
};

QQuickItem *ZNTTestHand::Private::find(Ad ad, int index) const
{
    if (!window)
        return nullptr;
    QList<QQuickItem *> ads =
        itemsIn(window->contentItem(), [ad](const QQuickItem *item) { return isAd(item, ad); });
    if (ad != FeedAd) // the one on top: another may be about to go
        return index == 0 && !ads.isEmpty() ? ads.constLast() : nullptr;
    std::stable_sort(ads.begin(), ads.end(), [](const QQuickItem *one, const QQuickItem *other) {
        return one->mapToScene({}).y() < other->mapToScene({}).y();
    });
    return ads.value(index);
}

QQuickItem *ZNTTestHand::Private::find(Ad ad, const QString &name, int index) const
{
    QQuickItem *view = find(ad, index);
    if (!view || name.isEmpty())
        return view;
    return itemsIn(view, [&name](const QQuickItem *item) {
        return item->objectName() == name;
    }).value(0);
}

template <class Action>
QString ZNTTestHand::Private::with(Ad ad, const QString &name, int index, Action action) const
{
    if (!window)
        return QStringLiteral("the hand has no window");
    if (!find(ad, index))
        return QStringLiteral("there is no %1 %2 in the window%3")
            .arg(QLatin1String(nameOf(ad)))
            .arg(index)
            .arg(znt::testing::clockNote());
    QQuickItem *item = find(ad, name, index);
    if (!item)
        return QStringLiteral("the %1 has no \"%2\"").arg(QLatin1String(nameOf(ad)), name);
    return action(item);
}

template <class Action>
QString ZNTTestHand::Private::withWindow(bool isShown, Action action) const
{
    if (!window)
        return QStringLiteral("the hand has no window");
    action(window.data());
    const auto isDone = [&] {
        return !window
            || isShown == (window->isExposed() && window->visibility() != QWindow::Minimized);
    };
    return znt::testing::waitFor(isDone, windowPatience)
        ? QString()
        : QStringLiteral("the window did not %1").arg(isShown ? u"appear" : u"disappear");
}

ZNTTestHand::ZNTTestHand(QQuickWindow *window, QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>())
{
    setWindow(window);
}

ZNTTestHand::~ZNTTestHand() = default;

QQuickWindow *ZNTTestHand::window() const
{
    return d->window;
}

void ZNTTestHand::setWindow(QQuickWindow *window)
{
    if (d->pointer && d->window == window)
        return;
    d->window = window;
    d->pointer = std::make_unique<ZNTTestPointer>(window);
    Q_EMIT windowChanged();
}

QQuickItem *ZNTTestHand::ad(Ad ad, int index) const
{
    return d->find(ad, index);
}

QQuickItem *ZNTTestHand::part(Ad ad, const QString &name, int index) const
{
    return d->find(ad, name, index);
}

QString ZNTTestHand::sees(Ad ad, int index) const
{
    return d->with(ad, {}, index, [=, this](QQuickItem *) {
        const auto isSeen = [=, this] {
            const QQuickItem *view = d->find(ad, index);
            return view && view->isVisible() && hasPictures(view);
        };
        return znt::testing::waitFor(isSeen, picturePatience)
            ? QString()
            : QStringLiteral("the %1 is not visible with its pictures")
                  .arg(QLatin1String(nameOf(ad)));
    });
}

QString ZNTTestHand::tap(Ad ad, const QString &name, int index)
{
    return d->with(ad, name, index, [this](const QQuickItem *item) {
        d->pointer->tap(centreOf(item));
        return QString();
    });
}

QString ZNTTestHand::pan(Ad ad, const QPointF &by, int milliseconds, int index)
{
    return d->with(ad, {}, index, [this, by, milliseconds](const QQuickItem *item) {
        d->pointer->panAtOnce(centreOf(item), by, std::chrono::milliseconds(milliseconds));
        return QString();
    });
}

QString ZNTTestHand::scroll(Ad ad, double by, int index)
{
    return d->with(ad, {}, index, [by](QQuickItem *item) {
        for (; item; item = item->parentItem()) {
            const QVariant top = item->property("contentY");
            if (!top.isValid() || !item->property("contentHeight").isValid())
                continue;
            const double first = item->property("originY").toDouble();
            const double last = std::max(
                first, first + item->property("contentHeight").toDouble() - item->height());
            item->setProperty("contentY", std::clamp(top.toDouble() + by, first, last));
            return QString();
        }
        return QStringLiteral("the ad is in nothing that scrolls");
    });
}

void ZNTTestHand::tilt(double degrees)
{
    d->sensors.tilt(degrees);
}

void ZNTTestHand::shake()
{
    d->sensors.shake();
}

QString ZNTTestHand::key(Qt::Key key)
{
    if (!d->window)
        return QStringLiteral("the hand has no window");
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, Qt::NoModifier);
        if (d->window)
            QCoreApplication::sendEvent(d->window, &event);
    }
    return {};
}

QString ZNTTestHand::hide()
{
    return d->withWindow(false, [](QQuickWindow *window) { window->hide(); });
}

QString ZNTTestHand::show()
{
    return d->withWindow(true, [](QQuickWindow *window) { window->show(); });
}

QString ZNTTestHand::background()
{
    return d->withWindow(false, [](QQuickWindow *window) { window->showMinimized(); });
}

QString ZNTTestHand::foreground()
{
    return d->withWindow(true, [](QQuickWindow *window) { window->showNormal(); });
}

QString ZNTTestHand::rotate()
{
    return d->withWindow(
        true, [](QQuickWindow *window) { window->resize(window->size().transposed()); });
}

void ZNTTestHand::setSafeArea(double left, double top, double right, double bottom)
{
    ZNTAdsSDK::setSafeAreaInsets({left, top, right, bottom});
}

QImage ZNTTestHand::picture(Ad ad, int index) const
{
    const QQuickItem *view = d->find(ad, index);
    if (!view)
        return {};
    const QImage whole = d->window->grabWindow();
    const double ratio = whole.devicePixelRatio();
    const QRectF place = view->mapRectToScene(view->boundingRect());
    QImage picture = whole.copy(
        QRectF(place.topLeft() * ratio, place.size() * ratio).toAlignedRect() & whole.rect());
    return picture;
}

QString ZNTTestHand::looksLike(Ad ad, const QString &file, int index) const
{
    const QImage actual = picture(ad, index);
    if (actual.isNull())
        return QStringLiteral("there is no picture of the %1").arg(QLatin1String(nameOf(ad)));
    const QImage expected(file);
    if (expected.isNull())
        return actual.save(file) ? QStringLiteral("%1 was not there and is now").arg(file)
                                 : QStringLiteral("%1 cannot be written").arg(file);
    constexpr double tolerance = 1; // percent
    const bool sameSize = expected.size() == actual.size();
    const double share = sameSize ? differingShare(expected, actual) : 100;
    if (share <= tolerance)
        return {};
    const QString beside = file + QStringLiteral(".actual.png");
    actual.save(beside);
    return QStringLiteral("%1 % of the ad differ from %2; see %3")
        .arg(share, 0, 'f', 1)
        .arg(file, beside);
}

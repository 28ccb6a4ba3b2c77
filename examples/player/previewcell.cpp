#include "previewcell.h"

#include "dump.h"
#include "findings.h"

#include <ZNTAds/ZNTFeedAdView.h>
#include <ZNTAds/ZNTFeedManager.h>
#include <ZNTAds/ZNTInterstitialAd.h>
#include <ZNTAds/ZNTInterstitialManager.h>
#include <ZNTAds/ZNTSplashAdView.h>
#include <ZNTAds/ZNTSplashManager.h>
#include <ZNTAdsTesting/ZNTTestClock.h>

#include <QElapsedTimer>
#include <QEventLoop>
#include <QPainter>
#include <QQuickItemGrabResult>
#include <QQuickWindow>
#include <QTimer>

#include <functional>

namespace player {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int look = 20;            // milliseconds
constexpr int impatience = 300;     // milliseconds, when pictures have failed to come
constexpr double plainHeight = 200; // points, of a template that asks for none

bool waitFor(const std::function<bool()> &holds, int patience)
{
    QElapsedTimer waited;
    waited.start();
    while (!holds() && waited.elapsed() < patience) {
        QEventLoop loop;
        QTimer::singleShot(look, &loop, &QEventLoop::quit);
        loop.exec();
    }
    return holds();
}

// A window with the manager that shows the ad in it; null where the answer has none.
class Scene
{
public:
    Scene(const Drawing &drawing, const QJsonObject &answer, QSize size)
    {
        window.resize(size);
        window.contentItem()->setSize(size);
        window.setColor(Qt::white);
        window.show();
        show(drawing, answer);
    }

    QQuickItem *view() const
    {
        if (m_row)
            return m_row.get();
        if (m_interstitial.interstitialAd())
            return m_interstitial.interstitialAd()->adView();
        return m_splash.splashAdView();
    }

    QQuickWindow window;

private:
    void show(const Drawing &drawing, const QJsonObject &answer)
    {
        switch (drawing.kind) {
        case Drawing::Splash:
            return showSplash(drawing.style, answer);
        case Drawing::Interstitial:
            return showInterstitial(answer);
        case Drawing::Feed:
            return showFeed(drawing.style, answer);
        }
    }
    void showSplash(int style, const QJsonObject &answer)
    {
        m_splash.setAdStyle(style);
        if (m_splash.handleAdResponse(answer))
            m_splash.showSplashAdWithWindow(&window);
    }
    void showInterstitial(const QJsonObject &answer)
    {
        m_interstitial.setShowAdController(window.contentItem());
        if (m_interstitial.handleAdResponse(answer))
            m_interstitial.showInterstitialAd();
    }
    void showFeed(int style, const QJsonObject &answer)
    {
        if (!m_feed.handleAdResponse(answer) || m_feed.loadedAdDataArray().isEmpty())
            return;
        m_row.reset(m_feed.createAdViewWithStyle(style, {double(window.width()), plainHeight}));
        auto *view = qobject_cast<ZNTFeedAdView *>(m_row.get());
        if (!view)
            return;
        view->setupWithAdsData(m_feed.loadedAdDataArray().constFirst());
        if (view->implicitHeight() > 0)
            view->setHeight(view->implicitHeight());
        m_row->setParentItem(window.contentItem());
        window.resize(window.width(), int(m_row->height()));
        window.contentItem()->setSize(window.size());
    }

    ZNTSplashManager m_splash;
    ZNTInterstitialManager m_interstitial;
    ZNTFeedManager m_feed;
    std::unique_ptr<QQuickItem> m_row;
};

// With as many pixels a point as the scale says.
QImage pictureOf(QQuickWindow &window, double scale)
{
    const auto result = window.contentItem()->grabToImage((QSizeF(window.size()) * scale).toSize());
    if (!result)
        return {};
    bool isReady = false;
    QObject::connect(
        result.get(), &QQuickItemGrabResult::ready, result.get(), [&isReady] { isReady = true; });
    waitFor([&isReady] { return isReady; }, 5000);
    QImage picture(result->image().size(), QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter(&picture).drawImage(0, 0, result->image());
    picture.setDevicePixelRatio(scale);
    return picture;
}

} // namespace

QList<Drawing> drawings()
{
    QList<Drawing> all{{u"splash, plain"_s, Drawing::Splash, 0},
        {u"splash, shake"_s, Drawing::Splash, 1}, {u"splash, slide"_s, Drawing::Splash, 2},
        {u"interstitial"_s, Drawing::Interstitial, 0}};
    const QStringList codes{u"XCT"_s, u"XSTXW"_s, u"XSWXT"_s, u"XDT"_s, u"XTWHH"_s, u"XWZFC"_s,
        u"XST"_s, u"XZTYW"_s, u"XZWYT"_s};
    for (const QString &code : codes)
        all.append(
            {u"feed, "_s + code, Drawing::Feed, int(ZNTFeedManager().getAdStyleFromString(code))});
    return all;
}

Cell drawCell(
    const Drawing &drawing, const QJsonObject &answer, QSize size, double scale, int *patience)
{
    ZNTTestClock clock; // countdowns stand still
    Scene scene(drawing, answer, size);
    Cell cell{drawing.label, {}, {}};
    if (!scene.view()) {
        cell.findings.append(u"nothing can be shown of this answer"_s);
        return cell;
    }
    const auto isThere = [&scene] {
        const QQuickItem *view = scene.view();
        return !view || (view->isVisible() && hasPictures(view));
    };
    if (!waitFor(isThere, *patience))
        *patience = impatience;
    clock.advance(1s); // it has faded in
    QQuickItem *view = scene.view();
    if (!view || !view->isVisible()) {
        cell.findings.append(u"it does not appear: a picture is missing or broken"_s);
        return cell;
    }
    cell.picture = pictureOf(scene.window, scale);
    cell.findings = findingsIn(view, cell.picture);
    return cell;
}

} // namespace player

#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>
#include <ZNTAds/ZNTDelegateRef.h>
#include <ZNTAds/ZNTSplashDelegate.h>

#include <QtQuick/QQuickItem>

#include <memory>

/// What the three splash creatives have in common: the blurred background, the sharp card, the
/// texts, the skip button, the source label or logo, and the video mode.
///
/// A creative is hidden from its construction until its picture or video can be seen, and for ever
/// when that fails. Give it a size and put it under any QQuickItem of any QQuickWindow. It covers
/// what lies beneath: no mouse, touch, wheel or hover event goes through, and while it is shown it
/// has the keyboard focus. Escape stands for the skip button. A tap anywhere but on the skip button
/// is one click. Delegate calls and signals come after the event that caused them, so whoever gets
/// one may destroy the creative. Main thread only.
class ZNTADS_EXPORT ZNTSplashAdView : public QQuickItem
{
    Q_OBJECT
    Q_PROPERTY(bool hidden READ isHidden NOTIFY hiddenChanged)
    Q_PROPERTY(bool isVideoAd READ isVideoAd NOTIFY contentChanged)
    Q_PROPERTY(qreal safeTop READ safeTop NOTIFY safeInsetsChanged)
    Q_PROPERTY(qreal safeBottom READ safeBottom NOTIFY safeInsetsChanged)
    QML_ELEMENT
    QML_UNCREATABLE("Use one of the three creatives")

public:
    ~ZNTSplashAdView() override;

    /// Whether the creative itself is hidden, whatever its ancestors are.
    bool isHidden() const;
    /// Whether the creative is set up for a video.
    bool isVideoAd() const;
    /// How far the application's safe-area insets reach into the creative, in points.
    qreal safeTop() const;
    qreal safeBottom() const;

    /// Who hears of clicks: any QObject that implements ZNTSplashDelegate, held weakly. Null for
    /// none.
    void setDelegate(const ZNTDelegateRef<ZNTSplashDelegate> &delegate);

    /// Hides the creative, then shows it once its picture has been fetched and decoded, with its
    /// blurred copy behind it. Without the picture it stays hidden. A later setup replaces this
    /// one; what this one still loads never arrives. A logo at the picture's address is fetched
    /// together with it.
    /// @param imageUrl the picture's http or https address
    /// @param actionTip the text under the card; null for none
    /// @param source the advertiser's name; without one the label reads "广告"
    /// @param sourceLogo URL of a logo that takes the label's place, which stays empty when the
    /// logo cannot be had; empty or null for no logo
    void setupWithImageUrl(const QString &imageUrl, const QString &actionTip, const QString &source,
        const QString &sourceLogo);
    /// Hides the creative, then shows it once the video at @p videoUrl (http or https) has its
    /// first frame. The video fills the creative, keeps its aspect, and plays in an endless loop.
    /// It lies over all texts, so @p actionTip is not seen.
    void setupWithVideoUrl(const QString &videoUrl, const QString &actionTip);
    /// Shows the seconds left on the skip button, "跳过" below 1.
    void updateSkipButtonWithTime(qint64 seconds);
    /// The skip button, which belongs to the creative; skipClicked() notifies of its use.
    QQuickItem *skipButton() const;

    /// Notifies the delegate of a click, at once.
    Q_INVOKABLE void handleAdClick();

Q_SIGNALS:
    void hiddenChanged();
    void contentChanged();
    void safeInsetsChanged();
    /// The skip button was pressed, or Escape.
    void skipClicked();

protected:
    /// A creative that the QML file of that name draws.
    ZNTSplashAdView(const QString &part, QQuickItem *parent);

    /// A tap on the creative: a click, unless a creative has more to say.
    virtual void handleTap();
    /// The end of a pan on the creative, in its own coordinates: points, and points a second. Does
    /// nothing, unless a creative opens by it.
    virtual void handlePanGesture(const QPointF &translation, const QPointF &velocity);

private:
    void updateHidden();

    struct Q_DECL_HIDDEN Private;
    const std::unique_ptr<Private> d;
};

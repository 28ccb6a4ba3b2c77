#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>
#include <ZNTAds/ZNTDelegateRef.h>
#include <ZNTAds/ZNTSplashDelegate.h>

#include <QtCore/QMarginsF>
#include <QtQuick/QQuickItem>

/// What the three splash creatives have in common: the blurred background, the sharp card, the
/// texts, the skip button, the source label or logo, and the video mode.
///
/// A creative is hidden until its picture or video is ready. It can be put under any QQuickItem of
/// any QQuickWindow; main thread only.
class ZNTADS_EXPORT ZNTSplashAdView : public QQuickItem
{
    Q_OBJECT
    Q_PROPERTY(bool hidden READ isHidden NOTIFY hiddenChanged)
    Q_PROPERTY(bool isVideoAd READ isVideoAd NOTIFY contentChanged)
    QML_ANONYMOUS

public:
    ~ZNTSplashAdView() override;

    /// Whether the creative itself is hidden, whatever its ancestors are.
    bool isHidden() const;
    /// Whether the creative shows a video.
    bool isVideoAd() const;

    /// Who hears of clicks: any QObject that implements ZNTSplashDelegate, held weakly. Null for
    /// none.
    template <class Object>
    void setDelegate(Object *delegate)
    {
        setDelegate(ZNTDelegateRef<ZNTSplashDelegate>(delegate));
    }
    void setDelegate(const ZNTDelegateRef<ZNTSplashDelegate> &delegate);

    /// Shows the picture at @p imageUrl (http or https), its blurred copy behind it.
    /// @param actionTip the text under the card; in the shake and slide creatives it is called a
    /// hint
    /// @param source the advertiser's name; without one the label reads "广告"
    /// @param sourceLogo URL of a logo that takes the label's place; empty or null for none
    void setupWithImageUrl(const QString &imageUrl, const QString &actionTip, const QString &source,
        const QString &sourceLogo);
    /// Shows the video at @p videoUrl (http or https) in an endless loop instead of a picture.
    void setupWithVideoUrl(const QString &videoUrl, const QString &actionTip);
    /// Shows the seconds left on the skip button, "跳过" below 1.
    void updateSkipButtonWithTime(qint64 seconds);
    /// The skip button; emits clicked(). It belongs to the view.
    QQuickItem *skipButton() const;

    /// Tells the delegate of a click.
    Q_INVOKABLE void handleAdClick();

Q_SIGNALS:
    void hiddenChanged();
    void contentChanged();
    /// The skip button was pressed.
    void skipClicked();
};

#pragma once

#include <ZNTAdsTesting/ZNTExpect.h>

#include <QImage>
#include <QMarginsF>
#include <QObject>
#include <QPointF>
#include <QQuickWindow>

#include <memory>

QT_FORWARD_DECLARE_CLASS(QQuickItem)

/// A person with the application in the hand: taps, pans, scrolls, shakes and turns a window, by
/// the ads that are shown in it and not by coordinates.
///
/// What is done gives an empty text, or says why it cannot be done: no ad of that kind is shown, it
/// has no such control. Taps, pans and keys are real events, which reach what is there: a covered
/// ad gets nothing. From its making on, the motion sensors of the process are this one's. Main
/// thread.
class ZNTTestHand : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QQuickWindow *window READ window WRITE setWindow NOTIFY windowChanged)

public:
    /// Which ad is meant.
    enum Ad {
        SplashAd,       ///< the creative of the splash ad
        InterstitialAd, ///< the overlay of the interstitial ad
        FeedAd,         ///< a template of the feed, counted from the top of the window
    };
    Q_ENUM(Ad)

    /// @param window in which the ads are shown, held weakly; null for none yet
    /// @param parent the owner, if any
    explicit ZNTTestHand(QQuickWindow *window = nullptr, QObject *parent = nullptr);
    ~ZNTTestHand() override;

    /// The window; null when there is none, or when it was destroyed.
    QQuickWindow *window() const;
    /// Goes on in another window, held weakly; null for none.
    void setWindow(QQuickWindow *window);

    /// The view of the ad, whether it is visible or not; null when there is none.
    /// @param ad its kind
    /// @param index which one, of feed ads
    Q_INVOKABLE QQuickItem *ad(ZNTTestHand::Ad ad, int index = 0) const;
    /// A part of the ad by its name in the API, such as "skipButton" or "closeButton"; null when it
    /// has none of that name.
    Q_INVOKABLE QQuickItem *part(ZNTTestHand::Ad ad, const QString &name, int index = 0) const;

    /// That the ad is there with all its pictures, which are real and waited for: until then a
    /// splash ad stays hidden, and nothing counts. Waits 5 s of real time at most.
    Q_INVOKABLE QString sees(ZNTTestHand::Ad ad, int index = 0) const;

    /// Presses and releases in the middle of the ad, or of its part @p name.
    Q_INVOKABLE QString tap(ZNTTestHand::Ad ad, const QString &name = {}, int index = 0);
    /// Presses in the middle of the ad, moves by @p by in points within @p milliseconds, releases;
    /// it takes no real time.
    Q_INVOKABLE QString pan(
        ZNTTestHand::Ad ad, const QPointF &by, int milliseconds = 200, int index = 0);
    /// Scrolls the list around the ad by @p by in points, within its ends:
    /// what lies below comes up when it is positive.
    Q_INVOKABLE QString scroll(ZNTTestHand::Ad ad, double by, int index = 0);
    /// Tilts the device forwards by @p degrees from how it was held when the sensor was started.
    Q_INVOKABLE void tilt(double degrees);
    /// Shakes the device, for a third of a second of real time, while the event loop runs.
    Q_INVOKABLE void shake();
    /// Presses and releases a key in the window.
    Q_INVOKABLE QString key(Qt::Key key);

    /// Hides the window, and shows it again.
    Q_INVOKABLE QString hide();
    Q_INVOKABLE QString show();
    /// Puts the window away as when another application comes to the front, and brings it back. The
    /// state of the application stays as it is.
    Q_INVOKABLE QString background();
    Q_INVOKABLE QString foreground();
    /// Turns the device: width and height of the window change places.
    Q_INVOKABLE QString rotate();
    /// Sets what a notch or a bar takes of each edge of the screen, in points.
    Q_INVOKABLE void setSafeArea(double left, double top, double right, double bottom);

    /// What the window shows at the place of the ad, in its device's pixels; null without the ad.
    Q_INVOKABLE QImage picture(ZNTTestHand::Ad ad, int index = 0) const;
    /// That the ad looks as the picture in @p file does: of the same size, and at most one pixel in
    /// a hundred visibly different. Without the file it is written, which counts as not met, once;
    /// what differs is written beside it, as FILE.actual.png.
    Q_INVOKABLE QString looksLike(ZNTTestHand::Ad ad, const QString &file, int index = 0) const;

Q_SIGNALS:
    void windowChanged();

private:
    class Private;
    const std::unique_ptr<Private> d;
};

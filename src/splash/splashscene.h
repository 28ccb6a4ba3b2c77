// What a splash ad puts into a window.
#pragma once

#include <ZNTAds/ZNTSplashAdView.h>

#include <QVariantAnimation>

class QQuickWindow;

namespace znt {

// Holds the creative over everything else in its window, with a view of the host's under it, until
// both have faded out. Window and views may be destroyed at any time.
class SplashScene : public QObject
{
    Q_OBJECT

public:
    explicit SplashScene(QObject *parent = nullptr);
    // A creative that is not fading stays, as the window's own, and its skip button then removes
    // it.
    ~SplashScene() override;

    // Counts from the next show on, at the height that it has then, and until that has been closed.
    void setBottomView(QQuickItem *view);
    QQuickItem *bottomView() const { return m_bottomView; }

    // Owns the creative. The two views take the place of those before them and follow the window's
    // size; without a window nothing is seen.
    void show(ZNTSplashAdView *view, QQuickWindow *window);
    ZNTSplashAdView *view() const { return m_view; }
    // Whether there was a show that has not been closed, whatever has become of the creative.
    bool isShown() const { return m_isShown; }
    bool isFading() const { return m_fade.state() == QAbstractAnimation::Running; }

    // Then closed(); what the user does with the creative meanwhile counts no more.
    void fadeOut();

Q_SIGNALS:
    // The creative's skip button was used.
    void skipped();
    void bottomViewChanged();
    // Faded out; the views are no longer in the window, and no bottom view is set.
    void closed();

private:
    void setOpacity(double opacity);
    void detachView();
    void removeView();
    void removeViews();
    void endFade();
    void close();

    QPointer<ZNTSplashAdView> m_view;
    QPointer<QQuickItem> m_bottomView; // for the next show
    QPointer<QQuickItem> m_shownBottomView;
    QVariantAnimation m_fade;
    double m_bottomOpacity = 1; // the host's own
    bool m_isShown = false;
};

} // namespace znt

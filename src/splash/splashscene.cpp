#include "splash/splashscene.h"

#include "ui/covering.h"

#include <QQuickWindow>

namespace znt {

namespace {

constexpr int sceneFadeMilliseconds = 300;

} // namespace

SplashScene::SplashScene(QObject *parent)
    : QObject(parent)
{
    m_fade.setStartValue(1.0);
    m_fade.setEndValue(0.0);
    m_fade.setDuration(sceneFadeMilliseconds);
    connect(&m_fade, &QVariantAnimation::valueChanged, this,
        [this](const QVariant &opacity) { setOpacity(opacity.toDouble()); });
    connect(&m_fade, &QVariantAnimation::finished, this, &SplashScene::close);
}

SplashScene::~SplashScene()
{
    if (isFading())
        endFade();
    else if (m_view && m_view->parentItem())
        connect(m_view, &ZNTSplashAdView::skipClicked, m_view, &QObject::deleteLater);
    else
        removeView();
}

void SplashScene::show(ZNTSplashAdView *view, QQuickWindow *window)
{
    if (isFading())
        endFade();
    else
        removeViews();
    m_view = view;
    m_isShown = true;
    connect(view, &ZNTSplashAdView::skipClicked, this, &SplashScene::skipped);
    if (!window)
        return;
    m_shownBottomView = m_bottomView;
    layOver(view, window->contentItem(), m_shownBottomView);
}

void SplashScene::setBottomView(QQuickItem *view)
{
    if (std::exchange(m_bottomView, view) != view)
        Q_EMIT bottomViewChanged();
}

void SplashScene::fadeOut()
{
    if (isFading())
        return;
    detachView();
    m_bottomOpacity = m_shownBottomView ? m_shownBottomView->opacity() : 1;
    m_fade.start();
}

void SplashScene::setOpacity(double opacity)
{
    if (m_view)
        m_view->setOpacity(opacity);
    if (m_shownBottomView)
        m_shownBottomView->setOpacity(opacity * m_bottomOpacity);
}

// It still covers what lies beneath, but what the user does with it counts no more.
void SplashScene::detachView()
{
    if (!m_view)
        return;
    m_view->setDelegate(ZNTDelegateRef<ZNTSplashDelegate>());
    m_view->disconnect(this);
}

void SplashScene::removeView()
{
    if (!m_view)
        return;
    detachView();
    m_view->setParentItem(nullptr);
    m_view->deleteLater();
    m_view = nullptr;
}

void SplashScene::removeViews()
{
    removeView();
    if (QQuickItem *bottomView = std::exchange(m_shownBottomView, nullptr))
        bottomView->setParentItem(nullptr);
}

void SplashScene::endFade()
{
    m_fade.stop();
    setOpacity(1);
    removeViews();
}

void SplashScene::close()
{
    endFade();
    m_isShown = false;
    const QPointer<SplashScene> self(this);
    setBottomView(nullptr);
    if (self)
        Q_EMIT closed();
}

} // namespace znt

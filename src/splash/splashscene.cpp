#include "splash/splashscene.h"

#include <QQuickWindow>

namespace znt {

namespace {

constexpr int fadeMilliseconds = 300;

void raise(QQuickItem *item)
{
    for (const QQuickItem *sibling : item->parentItem()->childItems())
        item->setZ(qMax(item->z(), sibling->z()));
}

// The ad fills the window but for the bottom view's strip.
void layOut(const QQuickItem *content, QQuickItem *view, QQuickItem *bottomView)
{
    const double strip = bottomView ? bottomView->height() : 0;
    view->setSize({content->width(), content->height() - strip});
    if (bottomView) {
        bottomView->setPosition({0, view->height()});
        bottomView->setWidth(content->width());
    }
}

// Outlives the scene, as the creative may.
void followSize(const QQuickItem *content, QQuickItem *view, QQuickItem *bottomView)
{
    const auto follow = [content, view, bottom = QPointer(bottomView)] {
        layOut(content, view, bottom);
    };
    QObject::connect(content, &QQuickItem::widthChanged, view, follow);
    QObject::connect(content, &QQuickItem::heightChanged, view, follow);
    follow();
}

} // namespace

SplashScene::SplashScene(QObject *parent)
    : QObject(parent)
{
    m_fade.setStartValue(1.0);
    m_fade.setEndValue(0.0);
    m_fade.setDuration(fadeMilliseconds);
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
    QQuickItem *content = window->contentItem();
    m_shownBottomView = m_bottomView;
    followSize(content, view, m_shownBottomView);
    view->setParent(content);
    view->setParentItem(content);
    raise(view);
    if (m_shownBottomView) {
        m_shownBottomView->setParentItem(content);
        raise(m_shownBottomView);
    }
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

// It still covers what lies beneath, but what a person does with it counts no more.
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
    m_bottomView = nullptr;
    m_isShown = false;
    Q_EMIT closed();
}

} // namespace znt

#include "videorun.h"

#include "splashrun.h"

#include <ZNTAds/ZNTSplashAdView.h>
#include <ZNTAds/ZNTSplashManager.h>

namespace player {

VideoRun::VideoRun(const Options &options, EventLog &events, Stage &stage)
    : AdRun(options, events, stage)
    , m_bottomView(makeBottomView(options, stage))
{
}

void VideoRun::load()
{
    Q_EMIT loaded();
}

bool VideoRun::takeAnswer(const QJsonObject &)
{
    return false;
}

void VideoRun::show()
{
    const QSizeF window = m_stage.window().contentItem()->size();
    const double bottom = m_bottomView ? m_bottomView->height() : 0;
    m_view.reset(ZNTSplashManager::createAdViewWithStyle(m_options.style));
    m_view->setObjectName(u"splashAdView"_s);
    m_view->setSize({window.width(), window.height() - bottom});
    m_view->setDelegate(this);
    m_view->setupWithVideoUrl(m_options.video, QString());
    m_view->updateSkipButtonWithTime(0);
    // The view cannot be destroyed in its own signal.
    connect(
        m_view.get(), &ZNTSplashAdView::skipClicked, this, &VideoRun::close, Qt::QueuedConnection);
    m_view->setParentItem(m_stage.window().contentItem());
    if (m_bottomView) {
        m_bottomView->setPosition({0, m_view->height()});
        m_bottomView->setWidth(window.width());
        m_bottomView->setParentItem(m_stage.window().contentItem());
    }
}

void VideoRun::close()
{
    m_view.reset();
    m_bottomView.reset();
    Q_EMIT closed();
}

QQuickItem *VideoRun::adView(int) const
{
    return m_view.get();
}

QQuickItem *VideoRun::screen() const
{
    return m_stage.window().contentItem();
}

void VideoRun::handleAdClick()
{
    tell(u"handleAdClick"_s);
}

} // namespace player

#include "adrun.h"

#include "feedrun.h"
#include "interstitialrun.h"
#include "splashrun.h"
#include "videorun.h"

namespace player {

std::unique_ptr<AdRun> AdRun::make(const Options &options, EventLog &events, Stage &stage)
{
    if (options.format == Format::Feed)
        return std::make_unique<FeedRun>(options, events, stage);
    if (options.format == Format::Interstitial)
        return std::make_unique<InterstitialRun>(options, events, stage);
    if (!options.video.isEmpty())
        return std::make_unique<VideoRun>(options, events, stage);
    return std::make_unique<SplashRun>(options, events, stage);
}

AdRun::AdRun(const Options &options, EventLog &events, Stage &stage)
    : m_options(options)
    , m_stage(stage)
    , m_events(events)
{
}

void AdRun::tell(const QString &event, const QJsonObject &fields)
{
    m_events.write(event, fields);
}

void AdRun::tellLoaded(const QString &event, const QJsonObject &fields)
{
    tell(event, fields);
    Q_EMIT loaded();
}

void AdRun::tellFailed(const QString &event, const ZNTError &error)
{
    tell(event,
        {{u"domain"_s, error.domain()}, {u"code"_s, error.code()},
            {u"description"_s, error.localizedDescription()}});
    Q_EMIT failed();
}

void AdRun::tellClosed(const QString &event, const QJsonObject &fields)
{
    tell(event, fields);
    Q_EMIT closed();
}

} // namespace player

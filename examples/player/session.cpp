#include "session.h"

namespace player {

Session::Session(const Options &options, EventLog &events, Stage &stage)
    : m_options(options)
    , m_events(events)
    , m_run(AdRun::make(m_options, events, stage))
    , m_script(m_options, events, stage, *m_run)
{
    connect(m_run.get(), &AdRun::loaded, this, &Session::goOn);
    connect(m_run.get(), &AdRun::closed, this, &Session::finished);
    connect(m_run.get(), &AdRun::failed, this, &Session::failed);
    connect(&m_script, &Script::quitAsked, this, &Session::quitAsked);
}

void Session::start()
{
    if (m_options.answer)
        takeAnswer(*m_options.answer);
    else
        m_run->load();
}

void Session::takeAnswer(const QJsonObject &answer)
{
    const bool accepted = m_run->takeAnswer(answer);
    m_events.write(u"answer"_s, {{u"accepted"_s, accepted}});
    if (accepted)
        goOn();
    else
        Q_EMIT failed();
}

void Session::goOn()
{
    if (!m_options.shows) {
        Q_EMIT finished();
        return;
    }
    m_run->show();
    m_script.start();
    Q_EMIT shown();
}

} // namespace player

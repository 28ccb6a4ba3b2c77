// One format from its manager's making to its end.
#pragma once

#include "script.h"

namespace player {

class Session : public QObject
{
    Q_OBJECT

public:
    Session(const Options &options, EventLog &events, Stage &stage);

    // Asks for the ad, or takes the answer at hand.
    void start();

    AdRun &run() { return *m_run; }

Q_SIGNALS:
    // The show call has returned.
    void shown();
    // The ad has closed, or was loaded with nothing more to do.
    void finished();
    void failed();
    // By the script.
    void quitAsked();

private:
    void takeAnswer(const QJsonObject &answer);
    void goOn();

    const Options m_options;
    EventLog &m_events;
    const std::unique_ptr<AdRun> m_run;
    Script m_script;
};

} // namespace player

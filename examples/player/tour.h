// All five kinds of ad one after the other, with a picture of each.
#pragma once

#include "session.h"

#include <QTimer>

namespace player {

class Tour : public QObject
{
    Q_OBJECT

public:
    Tour(const Options &options, EventLog &events, Stage &stage);

    void start();

Q_SIGNALS:
    void finished(bool allShown);
    void quitAsked();

private:
    void begin();
    void watch();
    void take();
    void close();
    void end(qsizetype stop);

    const Options m_options;
    EventLog &m_events;
    Stage &m_stage;
    std::unique_ptr<Session> m_session;
    QTimer m_watch;
    QElapsedTimer m_waited;
    qsizetype m_stop = 0;
    int m_shown = 0;
};

} // namespace player

// The run: registration, the ad, and when and with which status it ends.
#pragma once

#include "session.h"
#include "tour.h"

namespace player {

class Player : public QObject
{
    Q_OBJECT

public:
    Player(const Options &options, EventLog &events);

    void start();
    int status() const { return m_status; }

private:
    void registerHost();
    void openLink(const QString &link, const std::function<void(bool)> &done);
    void play();
    void finish(int status);

    const Options &m_options;
    EventLog &m_events;
    Stage m_stage;
    std::unique_ptr<Session> m_session;
    std::unique_ptr<Tour> m_tour;
    bool m_finished = false;
    int m_status = 0;
};

} // namespace player

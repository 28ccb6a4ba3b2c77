// The run: registration, the ad, and when and with which status it ends.
#pragma once

#include "preview.h"
#include "studio.h"
#include "tour.h"

#include <ZNTAdsTesting/ZNTTestExchange.h>

namespace player {

class Player : public QObject
{
    Q_OBJECT

public:
    Player(const Options &options, EventLog &events);

    void start();
    int status() const { return m_status; }

private:
    void limitTime();
    void registerHost();
    void openLink(const QString &link, const std::function<void(bool)> &done);
    void play();
    void playTour();
    void openStudio();
    void drawPreview();
    void startExchange();
    void finish(int status);

    Options m_options;
    EventLog &m_events;
    Stage m_stage;
    std::unique_ptr<ZNTTestExchange> m_exchange; // of a studio or preview that was given none
    std::unique_ptr<Session> m_session;
    std::unique_ptr<Tour> m_tour;
    std::unique_ptr<Studio> m_studio;
    std::unique_ptr<Preview> m_preview;
    bool m_finished = false;
    int m_status = 0;
};

} // namespace player

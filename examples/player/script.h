// Runs the actions of the command line, each at its time after the ad was shown.
#pragma once

#include "adrun.h"

#include <ZNTAdsTesting/ZNTTestPointer.h>
#include <ZNTAdsTesting/ZNTTestSensors.h>

namespace player {

class Script : public QObject
{
    Q_OBJECT

public:
    Script(const Options &options, EventLog &events, Stage &stage, AdRun &run);

    void start();

Q_SIGNALS:
    void quitAsked();

private:
    void perform(const Action &action);
    void point(const Action &action);
    void changeScreen(const Action &action);
    void updateVisibility(QQuickItem *screen) const;
    void write(const Action &action);

    const Options &m_options;
    EventLog &m_events;
    Stage &m_stage;
    AdRun &m_run;
    ZNTTestPointer m_pointer;
    QPointF m_screenPlace;
    double m_screenOpacity = 1;
    bool m_isScreenHidden = false;
    std::unique_ptr<ZNTTestSensors>
        m_motion; // only when it is used: a device may have sensors of its own
};

} // namespace player

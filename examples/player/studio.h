// One place that stays open: any ad, at any size, as often as one likes, beside its timeline.
#pragma once

#include "session.h"

#include <ZNTAdsTesting/ZNTTestClock.h>

#include <QQmlApplicationEngine>
#include <QStringList>

namespace player {

class Studio : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QStringList positions READ positions CONSTANT)
    Q_PROPERTY(double scale READ scale CONSTANT)
    Q_PROPERTY(QQuickItem *view READ view NOTIFY viewChanged)
    Q_PROPERTY(QString answerFile READ answerFile NOTIFY answerChanged)
    Q_PROPERTY(QString message READ message NOTIFY messageChanged)

public:
    // The stage is where the ads are shown, in a window of its own.
    Studio(const Options &options, EventLog &events, Stage &stage);
    ~Studio() override;

    // False when its window cannot be made.
    bool start();

    QStringList positions() const;
    double scale() const;
    QQuickItem *view() const;
    QString answerFile() const { return m_answerFile; }
    QString message() const { return m_message; }

    // Loads and shows an ad, in place of what is there.
    Q_INVOKABLE void play(int format, int style, const QString &position);
    // The host's own closing.
    Q_INVOKABLE void close();
    // Shows the answer in the file from now on, in place of a position's; none when it is empty.
    Q_INVOKABLE void takeAnswer(const QUrl &file);
    Q_INVOKABLE void setSize(int width, int height);
    // Starts the studio anew, as Qt reads the scale once.
    Q_INVOKABLE void setScale(double scale);
    Q_INVOKABLE void setInsets(double top, double bottom);
    Q_INVOKABLE void setDark(bool dark);
    Q_INVOKABLE void setRightToLeft(bool rightToLeft);
    // As many times as fast as real time.
    Q_INVOKABLE void setSpeed(double speed);

Q_SIGNALS:
    void viewChanged();
    void answerChanged();
    void messageChanged();
    // Its window was closed.
    void closed();

private:
    void say(const QString &message);
    void end();

    Options m_options;
    EventLog &m_events;
    Stage &m_stage;
    std::unique_ptr<Session> m_session;
    std::unique_ptr<ZNTTestClock> m_clock; // while time does not go at its own speed
    QTimer m_looks;
    QPointer<QQuickItem> m_view;
    QString m_answerFile;
    QString m_message;
    QQmlApplicationEngine m_engine;
};

} // namespace player

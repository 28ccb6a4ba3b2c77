#pragma once

#include <ZNTAdsTesting/ZNTExpect.h>

#include <QObject>
#include <QPointer>
#include <QStringList>

class ZNTError;

/// Hears what becomes of an ad, beside the host's own delegate or handlers, and tells whether that
/// is what a test expects.
///
/// Listens to a ZNTSplashManager, ZNTInterstitialManager or ZNTFeedManager, or to the QML elements
/// SplashAd, InterstitialAd, FeedAds, FeedAd and FeedAdPlacer. An expectation that is not met yet
/// is waited for while the event loop runs, timeout() milliseconds of real time at most; time that
/// a ZNTTestClock holds has to be advanced before. Main thread.
class ZNTAdSpy : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QObject *target READ target WRITE setTarget NOTIFY targetChanged)
    Q_PROPERTY(int timeout READ timeout WRITE setTimeout NOTIFY timeoutChanged)
    Q_PROPERTY(QStringList heard READ heard NOTIFY heardChanged)

public:
    /// What may become of an ad.
    enum Event {
        Loaded,       ///< an answer was accepted
        Failed,       ///< loading or showing failed
        Shown,        ///< the ad entered its window; an interstitial ad has faded in
        Seen,         ///< it counts as seen
        Clicked,      ///< it was clicked
        TargetOpened, ///< the target of a click was handed to the system
        Closed,       ///< it has closed
    };
    Q_ENUM(Event)

    /// @param target what to listen to, held weakly; null for none yet
    /// @param parent the owner, if any
    explicit ZNTAdSpy(QObject *target = nullptr, QObject *parent = nullptr);
    ~ZNTAdSpy() override;

    /// What is listened to; null when there is nothing, or when it was destroyed.
    QObject *target() const;
    /// Listens to another, and forgets what was heard. What tells nothing about an ad is warned
    /// about.
    void setTarget(QObject *target);
    /// How long an expectation is waited for, in milliseconds of real time; 5000 unless set.
    int timeout() const;
    void setTimeout(int milliseconds);

    /// What was heard so far, in order, as texts: "loaded", "failed", "shown", "seen", "clicked",
    /// "target opened", "closed".
    QStringList heard() const;
    /// How often that was heard.
    Q_INVOKABLE int count(ZNTAdSpy::Event event) const;
    /// The code of the last failure; 0 without one.
    Q_INVOKABLE qint64 errorCode() const;
    /// Whether the last close came from the timer of an interstitial ad.
    Q_INVOKABLE bool hasClosedByItself() const;
    /// Forgets what was heard.
    Q_INVOKABLE void clear();

    /// That it happens, at least once.
    Q_INVOKABLE QString happens(ZNTAdSpy::Event event) const;
    /// That it happens, exactly once up to now.
    Q_INVOKABLE QString once(ZNTAdSpy::Event event) const;
    /// That it has not happened. Does not wait.
    Q_INVOKABLE QString never(ZNTAdSpy::Event event) const;
    /// That it fails, with this code.
    Q_INVOKABLE QString failsWith(qint64 code) const;
    /// That all of these happen, in this order, each once and nothing else with them.
    Q_INVOKABLE QString hears(const QList<ZNTAdSpy::Event> &events) const;

Q_SIGNALS:
    void targetChanged();
    void timeoutChanged();
    void heardChanged();

private Q_SLOTS:
    void hearSignal();
    void hearFailure(const ZNTError &error);
    void hearClose(bool autoClose);

private:
    void hear(Event event);
    bool listen(const char *signal, const char *slot);
    QString unmet(const QString &expected) const;

    QPointer<QObject> m_target;
    QList<Event> m_heard;
    QString m_error;
    qint64 m_errorCode = 0;
    bool m_hasClosedByItself = false;
    int m_timeout = 5000;
};

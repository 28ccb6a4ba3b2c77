#pragma once

#include <QDateTime>
#include <QObject>
#include <QQuickItem>

#include <memory>

/// Why an ad's view counts as seen right now, or does not, as values and as a sentence.
///
/// It asks the very code that decides. What it knows of the past, whether the view is watched and
/// since when, and when its ad was seen, is known from the moment that the first journal or
/// explanation began to listen. While it is active it looks ten times a second. Main thread.
///
/// In QML it is `AdExplanation` of ZNTAds.Inspector.
class ZNTAdExplanation : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QQuickItem *view READ view WRITE setView NOTIFY viewChanged)
    Q_PROPERTY(bool active READ isActive WRITE setActive NOTIFY activeChanged)
    Q_PROPERTY(bool counts READ counts NOTIFY changed)
    Q_PROPERTY(double share READ share NOTIFY changed)
    Q_PROPERTY(double ratio READ ratio NOTIFY changed)
    Q_PROPERTY(ZNTAdExplanation::Reason reason READ reason NOTIFY changed)
    Q_PROPERTY(QQuickItem *obstacle READ obstacle NOTIFY changed)
    Q_PROPERTY(bool watched READ isWatched NOTIFY changed)
    Q_PROPERTY(QDateTime watchedSince READ watchedSince NOTIFY changed)
    Q_PROPERTY(QDateTime unwatchedSince READ unwatchedSince NOTIFY changed)
    Q_PROPERTY(QDateTime seenAt READ seenAt NOTIFY changed)
    Q_PROPERTY(QString sentence READ sentence NOTIFY changed)

public:
    /// What takes some of the view away, or all of it; of several what takes the most.
    enum Reason {
        Nothing,        ///< all of it is visible
        NoView,         ///< there is none, or it was destroyed
        NoWindow,       ///< it is in no window
        NoSize,         ///< it has no area
        Hidden,         ///< it, or an ancestor, is hidden
        Transparent,    ///< it, or an ancestor, has an opacity of 0
        NotDrawn,       ///< it is in a row that a list keeps beyond its edge and does not draw
        Clipped,        ///< an ancestor clips it
        Scaled,         ///< it, or an ancestor, is drawn smaller than it is
        OutsideWindow,  ///< it lies outside of the window's edges
        WindowNotShown, ///< the window is hidden, minimised, transparent or not exposed
    };
    Q_ENUM(Reason)

    explicit ZNTAdExplanation(QObject *parent = nullptr);
    ~ZNTAdExplanation() override;

    /// The view that is explained, held weakly; null for none.
    QQuickItem *view() const;
    void setView(QQuickItem *view);
    /// Whether it looks by itself; not, unless set.
    bool isActive() const;
    void setActive(bool active);

    /// Whether enough of the view is visible now.
    bool counts() const;
    /// How much of it is visible, in percent; 0 when nothing is.
    double share() const;
    /// How much has to be, in percent.
    double ratio() const;
    Reason reason() const;
    /// The item that hides, clips or does not draw the view: an ancestor or itself; null when the
    /// reason is none.
    QQuickItem *obstacle() const;
    /// Whether it is being watched now, as far as is known.
    bool isWatched() const;
    /// Since when it is, or has been; invalid when nothing is known of it.
    QDateTime watchedSince() const;
    /// When the watch ended; invalid while it lasts.
    QDateTime unwatchedSince() const;
    /// When it was counted; invalid when it was not, as far as is known.
    QDateTime seenAt() const;
    /// All of that in words.
    QString sentence() const;

    /// Looks now.
    Q_INVOKABLE void update();

Q_SIGNALS:
    void viewChanged();
    void activeChanged();
    /// Something else was found than at the look before.
    void changed();

private:
    class Private;
    const std::unique_ptr<Private> d;
};

#pragma once

#include <QAbstractListModel>
#include <QJsonArray>

#include <memory>

/// What the ads of this process do, step by step, as a model: a row is an event, the oldest first.
///
/// It begins to listen when it is enabled; what happened before is not known. While no journal
/// listens, the library pays one test of a flag at each step. Events come in batches, one for each
/// turn of the event loop. Main thread.
///
/// What happens, with its details:
/// - "requested"; "answered"; "refused": error
/// - "loaded"; "failed": domain, code, error
/// - "shown"; "watched", when the checks of what is seen have begun; "unwatched", when they have
/// ended
///   without a result
/// - "share": percent, when it has changed by 1 or more; null when nothing is visible
/// - "seen"; "tracker fired", "tracker answered", "tracker failed": kind, url, error
/// - "tapped"; "target opened", "target not opened": link
/// - "closed": automatically, of an interstitial ad; "feedback"
///
/// In QML it is `AdJournal` of ZNTAds.Inspector.
class ZNTAdJournal : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(bool enabled READ isEnabled WRITE setEnabled NOTIFY enabledChanged)
    Q_PROPERTY(int maximumCount READ maximumCount WRITE setMaximumCount NOTIFY maximumCountChanged)
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    /// The roles of an event, by these names in QML.
    enum Role {
        TimeRole = Qt::UserRole, ///< "time": milliseconds since 1970
        FormatRole,              ///< "format": "splash", "interstitial", "feed", or empty
        PositionRole,            ///< "position": the ad position, or empty
        AdIdRole,                ///< "adId": the ad's id, or empty while there is none
        WhatRole,                ///< "what": see above
        DetailsRole,             ///< "details": an object, see above
        RemarkRole,              ///< "remark": what of the details tells the most, in a line
        TextRole,                ///< "text": all of it but the time in a line
    };
    Q_ENUM(Role)

    /// @param parent the owner, if any
    explicit ZNTAdJournal(QObject *parent = nullptr);
    ~ZNTAdJournal() override;

    /// Whether it listens; not, unless set.
    bool isEnabled() const;
    void setEnabled(bool enabled);
    /// How many events are kept, of which the oldest go first; 10,000 unless set, at least 1.
    int maximumCount() const;
    void setMaximumCount(int count);
    /// How many there are.
    int count() const;

    /// All events, as objects whose members are called as the roles are, without the text.
    QJsonArray toJson() const;
    /// The same as indented text.
    Q_INVOKABLE QString json() const;
    /// Forgets all events.
    Q_INVOKABLE void clear();

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void enabledChanged();
    void maximumCountChanged();
    void countChanged();

private:
    class Private;
    const std::unique_ptr<Private> d;
};

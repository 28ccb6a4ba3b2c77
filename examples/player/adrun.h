// One ad format in the host's hands: how it is loaded, shown and closed. Each delegate method
// becomes an event line.
#pragma once

#include "events.h"
#include "options.h"
#include "stage.h"

#include <ZNTAds/ZNTError.h>

#include <QObject>

#include <memory>

namespace player {

class AdRun : public QObject
{
    Q_OBJECT

public:
    // Makes the manager of the format; register first.
    static std::unique_ptr<AdRun> make(const Options &options, EventLog &events, Stage &stage);

    virtual void load() = 0;
    virtual bool takeAnswer(const QJsonObject &answer) = 0;
    virtual void show() = 0;
    virtual void close() = 0;

    // The ad's view, null when there is none; only the feed has rows.
    virtual QQuickItem *adView(int row) const = 0;
    // What holds the ad's items, also those beside its view.
    virtual QQuickItem *adItems(int row) const { return adView(row); }
    // The host's item that lies under all of the ad.
    virtual QQuickItem *screen() const = 0;
    virtual void scroll([[maybe_unused]] double y) { }

Q_SIGNALS:
    void loaded();
    void failed();
    void closed();

protected:
    AdRun(const Options &options, EventLog &events, Stage &stage);

    void tell(const QString &event, const QJsonObject &fields = {});
    void tellLoaded(const QString &event, const QJsonObject &fields = {});
    void tellFailed(const QString &event, const ZNTError &error);
    void tellClosed(const QString &event, const QJsonObject &fields = {});

    const Options &m_options;
    Stage &m_stage;

private:
    EventLog &m_events;
};

} // namespace player

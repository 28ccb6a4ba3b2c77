// The way of an ad that all formats share: requested, read, announced to the host, opened, failed.
#pragma once

#include "ads/clicktarget.h"
#include "ads/notify.h"
#include "diagnostics/adtrace.h"
#include "diagnostics/log.h"
#include "support/mainthread.h"
#include "ui/qmlpart.h"

#include <ZNTAds/ZNTAdsManager.h>
#include <ZNTAds/ZNTDelegateRef.h>

#include <QMutex>

#include <atomic>

namespace znt {

// What a format is called by in its log lines and errors.
struct AdFormat
{
    const char *name;   // "splash"
    const char *title;  // the same as the first word of a line
    const char *domain; // of the errors
    const char *loaded; // the line about a load; %1, where there is one, is the number of ads
};

// Belongs to a manager and does its work on the manager's behalf. Main thread, but for request(),
// fail() and the ad position.
template <class Manager, class Delegate>
class AdFlow
{
public:
    using DidFail = void (Delegate::*)(const ZNTError &error);

    // `failing` runs at each failure on the main thread, before the host hears of it.
    AdFlow(Manager *manager, const AdFormat &format, DidFail didFail,
        std::function<void()> failing = {})
        : m_manager(manager)
        , m_format(format)
        , m_didFail(didFail)
        , m_failing(std::move(failing))
    {
    }

    ZNTDelegateRef<Delegate> delegate;
    // Called where isLoading() may have changed, if it is there.
    std::function<void()> loadingChanged;

    QString mediaId() const
    {
        const QMutexLocker lock(&m_mutex);
        return m_mediaId;
    }
    // Whether that changed it.
    bool setMediaId(const QString &mediaId)
    {
        const QMutexLocker lock(&m_mutex);
        const QString before = std::exchange(m_mediaId, mediaId);
        return before != mediaId || before.isNull() != mediaId.isNull();
    }
    // False without an ad position, and the failure is on its way. An empty one is one.
    bool requireMediaId()
    {
        if (!mediaId().isNull())
            return true;
        logError("Cannot load ad data: mediaId is empty");
        fail(-1001, QStringLiteral("mediaId不能为空"));
        return false;
    }

    // False where nothing can be shown, and the failure is on its way.
    bool requireViews()
    {
        if (canShowViews())
            return true;
        logError("Cannot show %1 ad: no GUI application", m_format.name);
        fail(-1005, QStringLiteral("没有图形界面应用程序"));
        return false;
    }

    bool isLoading() const { return m_pending > 0; }
    // Sends one ad request. `read` makes what the format keeps out of the answer, in the pool, as
    // an answer may be megabytes; nothing if it cannot be used. `take` then keeps it and gives the
    // number of ads, and `loaded` is posted.
    template <class Read, class Take>
    void request(Read read, Take take, std::function<void()> loaded)
    {
        countPending(+1);
        if (ZNTAdTrace::isOn())
            ZNTAdTrace::note(ZNTAdTrace::Requested, m_manager, mediaId());
        const QPointer<QObject> manager(m_manager);
        const auto answered = [this, take = std::move(take), loaded = std::move(loaded)](
                                  const auto &ads) {
            countPending(-1);
            ZNTAdTrace::note(ZNTAdTrace::Answered, m_manager);
            if (ads)
                succeed(take(*ads), loaded);
            else
                failToRead();
        };
        ZNTAdsManager::sharedInstance()->requestAdWithPositionId(
            mediaId(), 0.0,
            [manager, read = std::move(read), answered](const QJsonObject &response) {
                inPool(
                    manager, [read, response] { return read(response); }, answered);
            },
            [this, manager](const ZNTError &error) {
                if (manager)
                    failToLoad(error);
            });
    }

    void fail(int code, const QString &description)
    {
        fail({QString::fromLatin1(m_format.domain), code, description});
    }
    void fail(const ZNTError &error)
    {
        logError("%1 ad error: %2", m_format.title, error.localizedDescription());
        if (m_failing)
            m_failing();
        notifyLater([this, error] { notify(m_didFail, &Manager::failed, error); });
    }

    // Calls the method when there is a delegate, then emits the signal; false when the manager has
    // not survived that.
    template <class... Parameters, class... Arguments>
    bool notify(void (Delegate::*method)(Parameters...), void (Manager::*signal)(Parameters...),
        const Arguments &...arguments)
    {
        if (!znt::notify(m_manager, delegate, method, arguments...))
            return false;
        const QPointer<QObject> manager(m_manager);
        ZNTAdTrace::note(ZNTAdTrace::Telling, m_manager);
        Q_EMIT(m_manager->*signal)(arguments...);
        return !manager.isNull();
    }
    // In an event-loop iteration of its own: the host is never called back from inside its own
    // call.
    void notifyLater(std::function<void()> call)
    {
        QMetaObject::invokeMethod(m_manager, std::move(call), Qt::QueuedConnection);
    }

    // Opens where a click leads, then calls the method.
    void open(const ClickTarget &target, void (Delegate::*didClose)())
    {
        openClickTarget(target, opened(didClose));
    }
    // Calls the method if the manager is still there.
    std::function<void()> opened(void (Delegate::*didClose)())
    {
        return [this, didClose, manager = QPointer<QObject>(m_manager)] {
            if (manager)
                notify(didClose, &Manager::targetOpened);
        };
    }

private:
    void countPending(int more)
    {
        m_pending += more;
        if (loadingChanged)
            loadingChanged();
    }
    void succeed(qsizetype count, const std::function<void()> &loaded)
    {
        ZNTAdTrace::note(ZNTAdTrace::Loaded, m_manager);
        logCount(m_format.loaded, count);
        notifyLater(loaded);
    }
    void failToRead()
    {
        logError("Failed to parse %1 ad data", m_format.name);
        fail(-1002, QStringLiteral("广告数据解析失败"));
    }
    void failToLoad(const ZNTError &error)
    {
        countPending(-1);
        if (ZNTAdTrace::isOn())
            ZNTAdTrace::note(ZNTAdTrace::Refused, m_manager, error.localizedDescription());
        logError("Failed to load %1 ad data: %2", m_format.name, error.localizedDescription());
        fail(error);
    }

    Manager *const m_manager;
    const AdFormat m_format;
    const DidFail m_didFail;
    const std::function<void()> m_failing;
    mutable QMutex m_mutex; // loads may start on any thread; the lock is for their sake
    QString m_mediaId;
    std::atomic<int> m_pending = 0;
};

} // namespace znt

// What the elements of ads that cover a window share.
#pragma once

#include <ZNTAds/ZNTError.h>

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <functional>

class QQuickWindow;

namespace znt {

// An element over a manager: what the manager tells becomes state and signals. Whoever hears of a
// signal may destroy the element.
class FullScreenAd : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString mediaId READ mediaId WRITE setMediaId NOTIFY mediaIdChanged)
    // Shows each ad as soon as it is loaded.
    Q_PROPERTY(bool showWhenLoaded READ showWhenLoaded WRITE setShowWhenLoaded NOTIFY
            showWhenLoadedChanged)
    Q_PROPERTY(bool loading READ isLoading NOTIFY stateChanged)
    Q_PROPERTY(bool ready READ isReady NOTIFY stateChanged)
    Q_PROPERTY(bool shown READ isShown NOTIFY stateChanged)
    // Whether the ad of the latest show counts as seen.
    Q_PROPERTY(bool seen READ isSeen NOTIFY stateChanged)
    // The latest failure; its domain is empty when there was none since the latest load.
    Q_PROPERTY(ZNTError error READ error NOTIFY stateChanged)
    Q_PROPERTY(int remainingSeconds READ remainingSeconds NOTIFY remainingSecondsChanged)
    QML_ANONYMOUS

public:
    using QObject::QObject;

    virtual QString mediaId() const = 0;
    virtual void setMediaId(const QString &mediaId) = 0;
    bool showWhenLoaded() const { return m_showWhenLoaded; }
    void setShowWhenLoaded(bool show);
    bool isLoading() const { return m_state.isLoading; }
    bool isReady() const { return m_state.isReady; }
    bool isShown() const { return m_state.isShown; }
    bool isSeen() const { return m_state.isSeen; }
    ZNTError error() const { return m_state.error; }
    virtual int remainingSeconds() const = 0;

    Q_INVOKABLE void load();
    // Over the window that the element stands in.
    Q_INVOKABLE void show();
    Q_INVOKABLE virtual void close() = 0;

Q_SIGNALS:
    void mediaIdChanged();
    void showWhenLoadedChanged();
    void stateChanged();
    void remainingSecondsChanged();

    void loaded();
    void failed(const ZNTError &error);
    void appeared();
    void clicked();
    void targetOpened();
    // It counts as seen.
    void rendered();

protected:
    struct State
    {
        bool isLoading = false;
        bool isReady = false;
        bool isShown = false;
        bool isSeen = false;
        ZNTError error;

        friend bool operator==(const State &, const State &) = default;
    };
    // False when the element has not survived what heard of it.
    bool change(const std::function<void(State &)> &set);
    template <class Manager>
    void follow(Manager *manager);

    virtual void requestAd() = 0;
    virtual void showOver(QQuickWindow *window) = 0;

private:
    void takeLoaded();
    void takeFailure(const ZNTError &error);
    void takeAppearance();
    void takeExposure();
    QQuickWindow *window() const;

    State m_state;
    bool m_showWhenLoaded = false;
};

template <class Manager>
void FullScreenAd::follow(Manager *manager)
{
    connect(manager, &Manager::mediaIdChanged, this, &FullScreenAd::mediaIdChanged);
    connect(manager, &Manager::remainingTimeChanged, this, &FullScreenAd::remainingSecondsChanged);
    connect(manager, &Manager::loaded, this, &FullScreenAd::takeLoaded);
    connect(manager, &Manager::failed, this, &FullScreenAd::takeFailure);
    connect(manager, &Manager::appeared, this, &FullScreenAd::takeAppearance);
    connect(manager, &Manager::clicked, this, &FullScreenAd::clicked);
    connect(manager, &Manager::targetOpened, this, &FullScreenAd::targetOpened);
    connect(manager, &Manager::rendered, this, &FullScreenAd::takeExposure);
}

} // namespace znt

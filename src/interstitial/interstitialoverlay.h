// What an interstitial ad lays over a screen of the host.
#pragma once

#include "ads/adcontent.h"
#include "model/ad.h"
#include "ui/covering.h"
#include "ui/inputblocker.h"
#include "ui/qmlpart.h"

namespace znt {

// Fills its screen and follows its size, above everything else in it, and lets no input through.
// Belongs to the screen and goes with it.
class InterstitialOverlay : public znt::InputBlocker
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("An interstitial ad makes it")
    Q_PROPERTY(QString closeTitle READ closeTitle NOTIFY remainingChanged)
    Q_PROPERTY(bool closable READ isClosable NOTIFY remainingChanged)
    Q_PROPERTY(QRectF safeArea READ safeArea NOTIFY safeAreaChanged)

public:
    // Starts to fetch the ad's pictures.
    InterstitialOverlay(const Ad &ad, QQuickItem *screen);

    // Seconds until it can be closed.
    void setRemaining(qint64 seconds);
    // Still covers the screen, but nothing in it answers any more.
    void setDismissed();

    // Null where the QML part could not be made.
    QQuickItem *containerView() const { return m_containerView; }
    QQuickItem *adImageView() const { return m_adImageView; }

    // The frame itself where `area` holds all of it, else moved into it.
    Q_INVOKABLE static QPointF reachable(const QRectF &frame, const QRectF &area);

Q_SIGNALS:
    void clicked();
    void closeRequested();
    void remainingChanged();
    void safeAreaChanged();

private:
    QString closeTitle() const;
    bool isClosable() const { return m_remaining < 1; }
    QRectF safeArea() const;

    AdContent m_content;
    Covering m_covering;
    qint64 m_remaining = 1;
    bool m_isDismissed = false;
    QmlPart m_part;
    QPointer<QQuickItem> m_containerView;
    QPointer<QQuickItem> m_adImageView;
};

} // namespace znt

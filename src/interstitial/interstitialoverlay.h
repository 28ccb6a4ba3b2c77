// What an interstitial ad lays over a screen of the host.
#pragma once

#include "ui/focusloan.h"
#include "ui/inputblocker.h"

#include <QImage>
#include <QJsonObject>

namespace znt {

// Fills its screen and follows its size, above everything else in it. No mouse, touch, wheel, hover
// or key event goes through, and the keyboard focus stays inside while the overlay has it. Belongs
// to the screen and goes with it.
class InterstitialOverlay : public InputBlocker
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("An interstitial ad makes it")
    Q_PROPERTY(QString text MEMBER m_text CONSTANT)
    Q_PROPERTY(bool hasLogo MEMBER m_hasLogo CONSTANT)
    Q_PROPERTY(QImage picture MEMBER m_picture NOTIFY pictureChanged)
    Q_PROPERTY(QImage logo MEMBER m_logo NOTIFY logoChanged)
    Q_PROPERTY(QString closeTitle READ closeTitle NOTIFY remainingChanged)
    Q_PROPERTY(bool closable READ isClosable NOTIFY remainingChanged)
    Q_PROPERTY(QRectF safeArea MEMBER m_safeArea NOTIFY safeAreaChanged)

public:
    // Starts to fetch the ad's pictures.
    InterstitialOverlay(const QJsonObject &ad, QQuickItem *screen);
    ~InterstitialOverlay() override;

    // Seconds until it can be closed.
    void setRemaining(qint64 seconds);
    // Still covers the screen, but nothing in it answers any more.
    void setDismissed();

    // Null where the looks could not be made.
    QQuickItem *subview(const QString &name) const;

    // The frame itself where `area` holds all of it, else moved into it.
    Q_INVOKABLE static QPointF reachable(const QRectF &frame, const QRectF &area);

Q_SIGNALS:
    // A person wants to see more of the ad, or to close it. Both may come from the middle of an
    // event: whoever listens lets that end first.
    void clicked();
    void closeRequested();

    void pictureChanged();
    void logoChanged();
    void remainingChanged();
    void safeAreaChanged();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;

private:
    QString closeTitle() const;
    bool isClosable() const { return m_remaining < 1; }
    void fetchPictures(const QJsonObject &ad);
    void follow(const QQuickItem *screen);
    void enter(QQuickWindow *window);
    void updateSafeArea();

    QString m_text;
    bool m_hasLogo = false;
    QImage m_picture;
    QImage m_logo;
    qint64 m_remaining = 1;
    bool m_isDismissed = false;
    QRectF m_safeArea;
    QPointer<QQuickWindow> m_window;
    FocusLoan m_focus;
    QQuickItem *m_looks = nullptr;
};

} // namespace znt

#include "interstitial/interstitialoverlay.h"

#include "model/adanswer.h"
#include "net/remoteimage.h"
#include "support/json.h"
#include "ui/qmlpart.h"
#include "ui/safearea.h"

#include <QQuickWindow>

namespace znt {

namespace {

// Above whatever the host has raised in its screen, beneath the popups of Qt Quick Controls.
constexpr qreal top = 1'000'000;
// Between what had to be moved and the edge that it was moved away from.
constexpr qreal distance = 10;

QString textOf(const QJsonObject &ad)
{
    const QString text = randomText(ad, {QStringLiteral("TXT"), QStringLiteral("TITLE")});
    return text.isEmpty() ? QStringLiteral("广告内容") : text;
}

qreal moved(qreal at, qreal length, qreal from, qreal to)
{
    if (at >= from && at + length <= to)
        return at;
    const qreal first = from + distance;
    const qreal last = to - distance - length;
    return first < last ? qBound(first, at, last) : (from + to - length) / 2;
}

} // namespace

InterstitialOverlay::InterstitialOverlay(const QJsonObject &ad, QQuickItem *screen)
    : InputBlocker(screen)
    , m_text(textOf(ad))
{
    setFlag(ItemIsFocusScope);
    setZ(top);
    follow(screen);
    connect(SafeArea::instance(), &SafeArea::changed, this, &InterstitialOverlay::updateSafeArea);
    fetchPictures(ad);
    m_looks = createLooks(this, QStringLiteral("InterstitialOverlay"));
    enter(screen->window());
}

InterstitialOverlay::~InterstitialOverlay()
{
    m_focus.giveBack();
    delete m_looks; // while what they read is still there
}

void InterstitialOverlay::fetchPictures(const QJsonObject &ad)
{
    const QString picture = json::string(ad[u"images"][0][u"url"]);
    if (!picture.isEmpty()) {
        fetchImage(picture, this, [this](const QImage &fetched) {
            m_picture = fetched;
            Q_EMIT pictureChanged();
        });
    }
    const QString logo = json::string(ad[u"sourceLogo"]);
    m_hasLogo = !logo.isEmpty();
    if (m_hasLogo) {
        fetchImage(logo, this, [this](const QImage &fetched) {
            m_logo = fetched;
            Q_EMIT logoChanged();
        });
    }
}

void InterstitialOverlay::follow(const QQuickItem *screen)
{
    const auto fill = [this, screen] { setSize(screen->size()); };
    connect(screen, &QQuickItem::widthChanged, this, fill);
    connect(screen, &QQuickItem::heightChanged, this, fill);
    fill();
}

void InterstitialOverlay::setRemaining(qint64 seconds)
{
    m_remaining = seconds;
    Q_EMIT remainingChanged();
}

void InterstitialOverlay::setDismissed()
{
    m_isDismissed = true;
    if (m_looks)
        m_looks->setEnabled(false);
}

QString InterstitialOverlay::closeTitle() const
{
    return isClosable() ? QStringLiteral("关闭") : QString::number(m_remaining);
}

QQuickItem *InterstitialOverlay::subview(const QString &name) const
{
    return m_looks ? m_looks->findChild<QQuickItem *>(name) : nullptr;
}

QPointF InterstitialOverlay::reachable(const QRectF &frame, const QRectF &area)
{
    return {moved(frame.x(), frame.width(), area.left(), area.right()),
        moved(frame.y(), frame.height(), area.top(), area.bottom())};
}

void InterstitialOverlay::updateSafeArea()
{
    const QRectF area = QRectF(QPointF(), size()).marginsRemoved(safeInsetsOf(this));
    if (std::exchange(m_safeArea, area) != area)
        Q_EMIT safeAreaChanged();
}

void InterstitialOverlay::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    InputBlocker::geometryChange(newGeometry, oldGeometry);
    updateSafeArea();
}

void InterstitialOverlay::itemChange(ItemChange change, const ItemChangeData &data)
{
    InputBlocker::itemChange(change, data);
    if (change == ItemSceneChange)
        enter(data.window);
}

void InterstitialOverlay::enter(QQuickWindow *window)
{
    if (m_window)
        m_window->removeEventFilter(this);
    m_window = window;
    if (!window) {
        m_focus.giveBack();
        return;
    }
    window->installEventFilter(this);
    updateSafeArea();
    // Queued: in the middle of a move Qt settles the focus itself, at its end.
    QMetaObject::invokeMethod(
        this, [this] { m_focus.lend(this); }, Qt::QueuedConnection);
}

// The host's shortcuts would come before any key event.
bool InterstitialOverlay::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::ShortcutOverride || !hasActiveFocus())
        return InputBlocker::eventFilter(watched, event);
    event->accept();
    return true;
}

void InterstitialOverlay::keyPressEvent(QKeyEvent *event)
{
    event->accept();
    const bool closes = event->key() == Qt::Key_Escape || event->key() == Qt::Key_Back;
    if (closes && isClosable() && !m_isDismissed)
        Q_EMIT closeRequested();
}

void InterstitialOverlay::keyReleaseEvent(QKeyEvent *event)
{
    event->accept();
}

} // namespace znt

#include "interstitial/interstitialoverlay.h"

#include <QCoreApplication>

namespace znt {

namespace {

// Between what had to be moved and the edge that it was moved away from.
constexpr qreal distance = 10;

QString textOf(const Ad &ad)
{
    const QString text = randomText(ad, {QStringLiteral("TXT"), QStringLiteral("TITLE")});
    return text.isEmpty() ? QCoreApplication::translate("ZNTAds", "广告内容") : text;
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

InterstitialOverlay::InterstitialOverlay(const Ad &ad, QQuickItem *screen)
    : m_covering(this)
    , m_part(this, QStringLiteral("InterstitialOverlay"),
          {{QStringLiteral("view"), QVariant::fromValue<QObject *>(this)},
              {QStringLiteral("content"), QVariant::fromValue(&m_content)}})
    , m_containerView(m_part.subview("containerView"))
    , m_adImageView(m_part.subview("adImageView"))
{
    setFlag(ItemIsFocusScope);
    m_content.setText(textOf(ad));
    m_content.fetchPicture(ad.imageUrls.value(0));
    m_content.fetchLogo(!ad.sourceLogo.isEmpty(), ad.sourceLogo, ad.imageUrls.value(0));
    connect(&m_part, &QmlPart::tapped, this, &InterstitialOverlay::clicked);
    connect(&m_part, &QmlPart::closeRequested, this, &InterstitialOverlay::closeRequested);
    connect(&m_covering, &Covering::safeInsetsChanged, this, &InterstitialOverlay::safeAreaChanged);
    connect(this, &QQuickItem::widthChanged, this, &InterstitialOverlay::safeAreaChanged);
    connect(this, &QQuickItem::heightChanged, this, &InterstitialOverlay::safeAreaChanged);
    connect(&m_covering, &Covering::closeKeyPressed, this, [this] {
        if (isClosable() && !m_isDismissed)
            m_part.close();
    });
    layOver(this, screen);
    m_covering.setActive(true);
}

void InterstitialOverlay::setRemaining(qint64 seconds)
{
    m_remaining = seconds;
    Q_EMIT remainingChanged();
}

void InterstitialOverlay::setDismissed()
{
    m_isDismissed = true;
    if (m_part.root())
        m_part.root()->setEnabled(false);
}

QString InterstitialOverlay::closeTitle() const
{
    return isClosable() ? QCoreApplication::translate("ZNTAds", "关闭")
                        : QString::number(m_remaining);
}

QPointF InterstitialOverlay::reachable(const QRectF &frame, const QRectF &area)
{
    return {moved(frame.x(), frame.width(), area.left(), area.right()),
        moved(frame.y(), frame.height(), area.top(), area.bottom())};
}

QRectF InterstitialOverlay::safeArea() const
{
    return QRectF(QPointF(), size()).marginsRemoved(m_covering.safeInsets());
}

} // namespace znt

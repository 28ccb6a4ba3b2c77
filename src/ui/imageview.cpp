#include "ui/imageview.h"

#include "support/mainthread.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <QSGImageNode>

#include <cmath>

namespace znt {

namespace {

constexpr std::array modeNames{"scaleToFill", "aspectFit", "aspectFill", "center"};

// No texture gets larger than this, whatever size the item is given.
constexpr qreal maximumTextureSide = 4096;

} // namespace

ImageView::ImageView(QQuickItem *parent)
    : QQuickItem(parent)
{
    setFlag(ItemHasContents);
}

void ImageView::setImage(const QImage &image)
{
    if (m_image.cacheKey() == image.cacheKey())
        return;
    m_image = image;
    Q_EMIT imageChanged();
    changed();
}

QSizeF ImageView::naturalSize() const
{
    return m_image.deviceIndependentSize();
}

QString ImageView::contentMode() const
{
    return QString::fromLatin1(modeNames[size_t(m_contentMode)]);
}

void ImageView::setContentMode(const QString &name)
{
    for (size_t i = 0; i < modeNames.size(); ++i) {
        if (name != QLatin1String(modeNames[i]) || m_contentMode == ContentMode(i))
            continue;
        m_contentMode = ContentMode(i);
        Q_EMIT contentModeChanged();
        changed();
    }
}

void ImageView::setCornerRadius(qreal radius)
{
    if (m_cornerRadius == radius || !std::isfinite(radius))
        return;
    m_cornerRadius = radius;
    Q_EMIT cornerRadiusChanged();
    changed();
}

void ImageView::setHidden(bool hidden)
{
    if (m_hidden == hidden)
        return;
    m_hidden = hidden;
    setVisible(!hidden);
    Q_EMIT hiddenChanged();
}

bool ImageView::isReady() const
{
    return m_drawnFor == wanted();
}

ImageFit ImageView::wanted() const
{
    ImageFit request{m_image, m_contentMode, {}, 1, m_cornerRadius};
    const qreal longest = qMax(width(), height());
    if (!(width() > 0 && height() > 0) || !std::isfinite(longest))
        return request;
    const qreal ratio =
        window() ? window()->effectiveDevicePixelRatio() : qGuiApp->devicePixelRatio();
    request.scale = qMin(ratio, maximumTextureSide / longest);
    request.size = (size() * request.scale).toSize().expandedTo({1, 1});
    return request;
}

// However much changes in one event-loop iteration, it is drawn once.
void ImageView::changed()
{
    if (!m_scheduled) {
        m_scheduled = true;
        QMetaObject::invokeMethod(this, &ImageView::prepare, Qt::QueuedConnection);
    }
    Q_EMIT readyChanged();
}

void ImageView::prepare()
{
    m_scheduled = false;
    const ImageFit request = wanted();
    if (m_busy || request == m_drawnFor)
        return;
    m_busy = true;
    inPool(
        this, [request] { return fittedImage(request); },
        [this, request](const QImage &drawn) { take(request, drawn); });
}

void ImageView::take(const ImageFit &request, const QImage &drawn)
{
    m_busy = false;
    m_drawnFor = request;
    m_drawn = drawn;
    m_textureIsOld = true;
    update();
    if (isReady())
        Q_EMIT readyChanged();
    else
        changed();
}

void ImageView::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size())
        changed();
}

void ImageView::itemChange(ItemChange change, const ItemChangeData &data)
{
    QQuickItem::itemChange(change, data);
    if (change == ItemSceneChange || change == ItemDevicePixelRatioHasChanged)
        changed();
}

QSGNode *ImageView::updatePaintNode(QSGNode *node, UpdatePaintNodeData *)
{
    if (m_drawn.isNull() || m_textureIsOld) {
        delete node; // and its texture with it
        node = nullptr;
    }
    if (m_drawn.isNull())
        return nullptr;
    auto *picture = static_cast<QSGImageNode *>(node);
    if (!picture) {
        QSGTexture *texture = window()->createTextureFromImage(m_drawn);
        if (!texture)
            return nullptr;
        picture = window()->createImageNode();
        picture->setTexture(texture);
        picture->setOwnsTexture(true);
        picture->setFiltering(QSGTexture::Linear);
        m_textureIsOld = false;
    }
    // Pixel for pixel, though the item may end within a pixel; stretched while it is out of date.
    const QSizeF size = isReady() ? QSizeF(m_drawn.size()) / m_drawnFor.scale : this->size();
    picture->setRect(QRectF(QPointF(), size));
    return picture;
}

} // namespace znt

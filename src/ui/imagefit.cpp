#include "ui/imagefit.h"

#include <QPainter>

namespace znt {

namespace {

// Where the whole picture lies in the view, in pixels of the view; it may reach beyond it.
QRectF placeOf(const ImageFit &request)
{
    const QRectF view(QPointF(), QSizeF(request.size));
    QSizeF size = request.image.deviceIndependentSize() * request.scale;
    switch (request.mode) {
    case ContentMode::ScaleToFill:
        return view;
    case ContentMode::AspectFit:
        size.scale(view.size(), Qt::KeepAspectRatio);
        break;
    case ContentMode::AspectFill:
        size.scale(view.size(), Qt::KeepAspectRatioByExpanding);
        break;
    case ContentMode::Center:
        break;
    }
    return {view.center() - QPointF(size.width(), size.height()) / 2, size};
}

// The part of the picture that is seen, and a pixel around it that the filter reads.
QRect partSeen(const ImageFit &request, const QRectF &place)
{
    const QRectF seen = place.intersected(QRectF(QPointF(), QSizeF(request.size)));
    const qreal across = request.image.width() / place.width();
    const qreal down = request.image.height() / place.height();
    const QRectF part((seen.x() - place.x()) * across, (seen.y() - place.y()) * down,
        seen.width() * across, seen.height() * down);
    return part.toAlignedRect().adjusted(-1, -1, 1, 1).intersected(request.image.rect());
}

// To whole pixels, so that edges stay sharp.
QRect roundedEdges(const QRectF &rect)
{
    const QPoint topLeft = rect.topLeft().toPoint();
    return {topLeft, rect.bottomRight().toPoint() - QPoint(1, 1)};
}

void drawScaled(QImage *onto, const ImageFit &request)
{
    const QRectF place = placeOf(request);
    const QRect part = partSeen(request, place);
    if (part.isEmpty())
        return;
    const qreal across = place.width() / request.image.width();
    const qreal down = place.height() / request.image.height();
    const QRect target = roundedEdges({place.x() + part.x() * across, place.y() + part.y() * down,
        part.width() * across, part.height() * down});
    QImage scaled = part == request.image.rect() ? request.image : request.image.copy(part);
    scaled.setDevicePixelRatio(1);
    if (target.isEmpty())
        return;
    QPainter painter(onto);
    painter.drawImage(target.topLeft(),
        scaled.scaled(target.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}

bool isOpaque(const ImageFit &request)
{
    const bool covered =
        request.mode == ContentMode::ScaleToFill || request.mode == ContentMode::AspectFill;
    return covered && request.cornerRadius <= 0 && !request.image.hasAlphaChannel();
}

QImage withRoundCorners(const QImage &square, qreal radius)
{
    QImage round(square.size(), QImage::Format_ARGB32_Premultiplied);
    round.fill(Qt::transparent);
    QPainter painter(&round);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(square);
    const qreal most = qMin(square.width(), square.height()) / 2.0;
    painter.drawRoundedRect(square.rect(), qMin(radius, most), qMin(radius, most));
    return round;
}

} // namespace

bool ImageFit::operator==(const ImageFit &other) const
{
    return image.cacheKey() == other.image.cacheKey() && mode == other.mode && size == other.size
        && scale == other.scale && cornerRadius == other.cornerRadius;
}

QImage fittedImage(const ImageFit &request)
{
    if (request.size.isEmpty() || request.image.isNull())
        return {};
    QImage drawn(request.size,
        isOpaque(request) ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied);
    if (drawn.isNull())
        return {};
    drawn.fill(Qt::transparent);
    drawScaled(&drawn, request);
    return request.cornerRadius > 0 ? withRoundCorners(drawn, request.cornerRadius * request.scale)
                                    : drawn;
}

} // namespace znt

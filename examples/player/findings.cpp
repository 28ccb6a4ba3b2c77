#include "findings.h"

#include <QQuickWindow>

#include <algorithm>
#include <array>
#include <cmath>

namespace player {

using namespace Qt::StringLiterals;

namespace {

constexpr double leastContrast = 3; // to 1
constexpr double touch = 2;         // points by which things may lie over one another

bool isDrawn(const QQuickItem *item)
{
    return item->isVisible() && item->opacity() > 0 && item->width() > 0 && item->height() > 0;
}

bool isText(const QQuickItem *item)
{
    return item->property("text").isValid() && item->property("truncated").isValid();
}

bool isButton(const QQuickItem *item)
{
    return QByteArray(item->metaObject()->className()).startsWith("Button");
}

// As in the findings: its text, or its name.
QString nameOf(const QQuickItem *item)
{
    const QString text = item->property("text").toString();
    constexpr qsizetype longest = 16;
    if (!text.isEmpty())
        return u"“%1”"_s.arg(text.size() > longest ? text.left(longest) + QChar(0x2026) : text);
    return item->objectName();
}

// All that are drawn, without what is inside of a button.
void collect(const QQuickItem *item, QList<const QQuickItem *> *all)
{
    if (!isDrawn(item))
        return;
    all->append(item);
    for (const QQuickItem *child : item->childItems()) {
        if (!isButton(item) || isText(child))
            collect(child, all);
    }
}

// A text is as large as what is written; its item may be larger.
QRectF placeOf(const QQuickItem *item)
{
    QRectF place = item->boundingRect();
    if (isText(item)) {
        const QSizeF written(
            item->property("contentWidth").toDouble(), item->property("contentHeight").toDouble());
        const int alignment = item->property("effectiveHorizontalAlignment").toInt();
        const double free = item->width() - written.width();
        const double x = alignment & Qt::AlignHCenter ? free / 2
            : alignment & Qt::AlignRight              ? free
                                                      : 0;
        place = QRectF({x, (item->height() - written.height()) / 2}, written);
    }
    return item->mapRectToScene(place);
}

double luminance(QRgb color)
{
    const auto linear = [](int channel) {
        const double share = channel / 255.0;
        return share <= 0.03928 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(color)) + 0.7152 * linear(qGreen(color))
        + 0.0722 * linear(qBlue(color));
}

double contrast(QRgb one, QRgb other)
{
    const double first = luminance(one);
    const double second = luminance(other);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

bool isLike(QRgb one, QRgb other)
{
    constexpr int near = 60;
    return std::abs(qRed(one) - qRed(other)) < near && std::abs(qGreen(one) - qGreen(other)) < near
        && std::abs(qBlue(one) - qBlue(other)) < near;
}

// What lies there on average, without the text itself; the text's colour where there is nothing
// else.
QRgb groundOf(const QImage &picture, const QRectF &place, QRgb text)
{
    const double ratio = picture.devicePixelRatio();
    const QRect pixels =
        QRectF(place.topLeft() * ratio, place.size() * ratio).toRect() & picture.rect();
    std::array<qint64, 3> sums{};
    qint64 count = 0;
    for (int y = pixels.top(); y <= pixels.bottom(); ++y) {
        for (int x = pixels.left(); x <= pixels.right(); ++x) {
            const QRgb color = picture.pixel(x, y);
            if (isLike(color, text))
                continue;
            sums[0] += qRed(color);
            sums[1] += qGreen(color);
            sums[2] += qBlue(color);
            ++count;
        }
    }
    return count == 0 ? text
                      : qRgb(int(sums[0] / count), int(sums[1] / count), int(sums[2] / count));
}

QRgb over(const QColor &color, QRgb ground)
{
    const auto mixed = [&color](int above, int below) {
        return int(std::lround(above * color.alphaF() + below * (1 - color.alphaF())));
    };
    return qRgb(mixed(color.red(), qRed(ground)), mixed(color.green(), qGreen(ground)),
        mixed(color.blue(), qBlue(ground)));
}

bool isWithin(const QQuickItem *item, const QQuickItem *other)
{
    for (; item; item = item->parentItem()) {
        if (item == other)
            return true;
    }
    return false;
}

void findOverlaps(const QList<const QQuickItem *> &shown, QStringList *findings)
{
    for (qsizetype i = 0; i < shown.size(); ++i) {
        for (qsizetype k = i + 1; k < shown.size(); ++k) {
            if (isWithin(shown.at(i), shown.at(k)) || isWithin(shown.at(k), shown.at(i)))
                continue;
            const QRectF both = placeOf(shown.at(i)) & placeOf(shown.at(k));
            if (both.width() > touch && both.height() > touch)
                findings->append(
                    u"%1 lies over %2"_s.arg(nameOf(shown.at(k)), nameOf(shown.at(i))));
        }
    }
}

void findInText(const QQuickItem *text, const QImage &picture, QStringList *findings)
{
    if (text->property("truncated").toBool())
        findings->append(u"%1 is cut"_s.arg(nameOf(text)));
    const QColor color = text->property("color").value<QColor>();
    const QRgb ground = groundOf(picture, placeOf(text), color.rgb());
    const double found = contrast(over(color, ground), ground);
    if (found < leastContrast)
        findings->append(u"%1 has a contrast of %2 to 1"_s.arg(nameOf(text)).arg(found, 0, 'f', 1));
}

} // namespace

QStringList findingsIn(const QQuickItem *ad, const QImage &picture)
{
    QStringList findings;
    QList<const QQuickItem *> all;
    collect(ad, &all);
    const QRectF screen(QPointF(), QSizeF(ad->window()->size()));
    QList<const QQuickItem *> shown; // texts and controls
    for (const QQuickItem *item : all) {
        const bool hasText = !item->property("text").toString().isEmpty();
        const QVariant hasImage = item->property("hasImage");
        if (hasImage.isValid() && !hasImage.toBool())
            findings.append(u"%1 has no picture"_s.arg(nameOf(item)));
        if (!hasText || (!isText(item) && !isButton(item)))
            continue; // a button without a title is an area to tap
        shown.append(item);
        if (!screen.adjusted(-1, -1, 1, 1).contains(placeOf(item)))
            findings.append(u"%1 is partly off screen"_s.arg(nameOf(item)));
        if (isText(item))
            findInText(item, picture, &findings);
    }
    findOverlaps(shown, &findings);
    return findings;
}

} // namespace player

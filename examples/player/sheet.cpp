#include "sheet.h"

#include <QBuffer>
#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace player {

using namespace Qt::StringLiterals;

namespace {

constexpr int margin = 24; // pixels, as all here
constexpr int labelHeight = 28;
constexpr int titleHeight = 48;
constexpr int remarkHeight = 18;
constexpr int mostRemarks = 6; // in the picture; the page has all
constexpr int perRow = 4;

const QColor ground(0xf2, 0xf3, 0xf5);
const QColor ink(0x1c, 0x1f, 0x24);
const QColor warning(0xb4, 0x23, 0x18);

QFont font(int pixels, bool bold = false)
{
    QFont font(u"Noto Sans CJK SC"_s);
    font.setPixelSize(pixels);
    font.setBold(bold);
    return font;
}

int widthOf(const Cell &cell)
{
    return std::max(cell.picture.width(), 200);
}

int remarksOf(const Cell &cell)
{
    return std::min<int>(int(cell.findings.size()), mostRemarks);
}

int heightOf(const Cell &cell)
{
    return labelHeight + cell.picture.height() + remarksOf(cell) * remarkHeight;
}

// The rows of a part, each of cells that are about as high.
QList<QList<Cell>> rowsOf(const SheetPart &part)
{
    QList<QList<Cell>> rows;
    for (const Cell &cell : part.cells) {
        if (rows.isEmpty() || rows.last().size() == perRow)
            rows.append(QList<Cell>());
        rows.last().append(cell);
    }
    return rows;
}

QSize sizeOf(const QList<Cell> &row)
{
    QSize size(margin, 0);
    for (const Cell &cell : row)
        size = {size.width() + widthOf(cell) + margin, std::max(size.height(), heightOf(cell))};
    return size;
}

QSize sizeOf(const SheetPart &part)
{
    QSize size(0, titleHeight);
    for (const auto rows = rowsOf(part); const auto &row : rows) {
        const QSize own = sizeOf(row);
        size = {std::max(size.width(), own.width()), size.height() + own.height() + margin};
    }
    return size;
}

void drawLine(QPainter *painter, const QRect &place, const QString &text)
{
    const QString fitting =
        QFontMetrics(painter->font()).elidedText(text, Qt::ElideRight, place.width());
    painter->drawText(place, Qt::AlignLeft | Qt::AlignVCenter, fitting);
}

void drawCell(QPainter *painter, QPoint at, const Cell &cell)
{
    const int width = widthOf(cell);
    painter->setPen(ink);
    painter->setFont(font(15, true));
    drawLine(painter, {at, QSize(width, labelHeight)}, cell.label);
    at.ry() += labelHeight;
    painter->drawImage(QRect(at, cell.picture.size()), cell.picture);
    at.ry() += cell.picture.height();
    painter->setPen(warning);
    painter->setFont(font(12));
    for (int i = 0; i < remarksOf(cell); ++i) {
        drawLine(painter, {at, QSize(width, remarkHeight)}, cell.findings.at(i));
        at.ry() += remarkHeight;
    }
}

QString embedded(const QImage &picture)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, "PNG");
    return u"data:image/png;base64,"_s + QString::fromLatin1(bytes.toBase64());
}

QString pageOf(const Cell &cell)
{
    QString text = u"<figure><figcaption>%1</figcaption>"_s.arg(cell.label.toHtmlEscaped());
    if (!cell.picture.isNull())
        text += u"<img width=%1 src=\"%2\" alt=\"%3\">"_s
                    .arg(cell.picture.deviceIndependentSize().width())
                    .arg(embedded(cell.picture), cell.label.toHtmlEscaped());
    text += u"<ul>"_s;
    for (const QString &finding : cell.findings)
        text += u"<li>%1"_s.arg(finding.toHtmlEscaped());
    return text + u"</ul></figure>\n"_s;
}

} // namespace

QImage drawSheet(const QList<SheetPart> &parts)
{
    QSize size(0, margin);
    for (const SheetPart &part : parts) {
        const QSize own = sizeOf(part);
        size = {std::max(size.width(), own.width()), size.height() + own.height()};
    }
    QImage sheet(size, QImage::Format_RGB32);
    if (sheet.isNull())
        return sheet;
    sheet.fill(ground);
    QPainter painter(&sheet);
    QPoint at(margin, margin);
    for (const SheetPart &part : parts) {
        painter.setPen(ink);
        painter.setFont(font(22, true));
        drawLine(&painter, {at, QSize(size.width() - 2 * margin, titleHeight)}, part.title);
        at.ry() += titleHeight;
        for (const auto rows = rowsOf(part); const auto &row : rows) {
            at.setX(margin);
            for (const Cell &cell : row) {
                drawCell(&painter, at, cell);
                at.rx() += widthOf(cell) + margin;
            }
            at.ry() += sizeOf(row).height() + margin;
        }
        at.setX(margin);
    }
    return sheet;
}

QByteArray sheetPage(const QString &title, const QList<SheetPart> &parts)
{
    QString page =
        u"<!doctype html><meta charset=utf-8><title>%1</title>\n"
        "<style>body{font:15px sans-serif;background:#f2f3f5;color:#1c1f24;margin:24px}"
        "section{display:flex;flex-wrap:wrap;gap:24px;align-items:flex-start}figure{margin:0}"
        "figcaption{font-weight:bold;margin-bottom:4px}ul{color:#b42318;padding-left:18px}"
        "img{max-width:100%}</style>\n<h1>%1</h1>\n"_s.arg(title.toHtmlEscaped());
    for (const SheetPart &part : parts) {
        page += u"<h2>%1</h2>\n<section>\n"_s.arg(part.title.toHtmlEscaped());
        for (const Cell &cell : part.cells)
            page += pageOf(cell);
        page += u"</section>\n"_s;
    }
    return page.toUtf8();
}

} // namespace player

// Many pictures of one ad, labelled, as one picture and as a page.
#pragma once

#include <QImage>
#include <QStringList>

namespace player {

struct Cell
{
    QString label;
    QImage picture; // null: there is none, and the findings say why
    QStringList findings;
};

// The cells of one size and scale.
struct SheetPart
{
    QString title;
    QList<Cell> cells;
};

QImage drawSheet(const QList<SheetPart> &parts);
// The pictures are within it.
QByteArray sheetPage(const QString &title, const QList<SheetPart> &parts);

} // namespace player

#include "preview.h"

#include "previewcell.h"

#include <QFileInfo>
#include <QSaveFile>

namespace player {

namespace {

QString titleOf(QSize size, double scale)
{
    return u"%1 × %2 points at %3×"_s.arg(size.width()).arg(size.height()).arg(scale);
}

} // namespace

Preview::Preview(const Options &options)
    : m_options(options)
{
}

void Preview::start()
{
    QList<SheetPart> parts;
    int patience = 5000; // milliseconds
    for (const QSize size : m_options.sizes) {
        for (const double scale : m_options.scales) {
            SheetPart part{titleOf(size, scale), {}};
            for (const auto all = drawings(); const Drawing &drawing : all)
                part.cells.append(drawCell(drawing, *m_options.answer, size, scale, &patience));
            parts.append(part);
        }
    }
    for (const SheetPart &part : parts) {
        for (const Cell &cell : part.cells) {
            for (const QString &finding : cell.findings)
                qInfo("%s, %s: %s", qUtf8Printable(part.title), qUtf8Printable(cell.label),
                    qUtf8Printable(finding));
        }
    }
    Q_EMIT finished(write(parts));
}

bool Preview::write(const QList<SheetPart> &parts) const
{
    const QFileInfo out(m_options.out);
    if (!drawSheet(parts).save(m_options.out, "PNG")) {
        qWarning("%s: cannot be written", qUtf8Printable(m_options.out));
        return false;
    }
    QSaveFile page(out.path() + u'/' + out.completeBaseName() + u".html"_s);
    return page.open(QIODevice::WriteOnly)
        && page.write(sheetPage(out.completeBaseName(), parts)) > 0 && page.commit();
}

} // namespace player

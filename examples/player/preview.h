// One answer as every format, style and template draws it, at each size and scale, on one sheet.
#pragma once

#include "options.h"

#include <QObject>

namespace player {

struct SheetPart;

class Preview : public QObject
{
    Q_OBJECT

public:
    explicit Preview(const Options &options);

    // Draws all, writes the sheet and beside it the page, and says what was found.
    void start();

Q_SIGNALS:
    void finished(bool written);

private:
    bool write(const QList<SheetPart> &parts) const;

    const Options m_options;
};

} // namespace player

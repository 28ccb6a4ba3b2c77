// The root of a feed template's QML part.
#pragma once

#include "ui/pressarea.h"

namespace znt {

// Lies under the subviews. Escape closes the ad.
class FeedRoot : public znt::PressArea
{
    Q_OBJECT
    QML_ELEMENT

Q_SIGNALS:
    void closeRequested();

protected:
    void keyPressEvent(QKeyEvent *event) override;
};

} // namespace znt

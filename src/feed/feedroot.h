// What lies under the subviews of a feed template.
#pragma once

#include "ui/pressarea.h"

namespace znt {

// The root of a template's looks, which tells the template what a person does. It may be in the
// middle of an event, so whoever listens lets that end first.
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

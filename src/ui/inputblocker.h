// The ground of a view that covers what lies beneath it.
#pragma once

#include "ui/pressarea.h"

namespace znt {

// Takes every mouse, touch, wheel and hover event that reaches it.
// (Of the base QML's tools need the full name.)
class ZNTADS_INTERNAL InputBlocker : public znt::PressArea
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit InputBlocker(QQuickItem *parent = nullptr);

protected:
    void wheelEvent(QWheelEvent *event) override;
    void hoverEnterEvent(QHoverEvent *event) override;
    void hoverMoveEvent(QHoverEvent *event) override;
};

} // namespace znt

// Keyboard focus for what covers a window for a while.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QList>
#include <QPointer>

class QQuickItem;

namespace znt {

// Lends the active focus of a window to an item and brings it back to where it was.
class ZNTADS_INTERNAL FocusLoan
{
public:
    // An item in no window gets nothing.
    void lend(QQuickItem *item);
    // Unless the focus has moved elsewhere meanwhile.
    void giveBack();

private:
    void restore() const;

    QPointer<QQuickItem> m_item;
    QPointer<QQuickItem> m_owner;
    QList<QPointer<QQuickItem>> m_scopes; // one of them has the focus when the item has gone
};

} // namespace znt

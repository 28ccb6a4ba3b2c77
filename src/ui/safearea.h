// What of the screen is free of notches, corners and bars.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QMarginsF>
#include <QObject>

class QQuickItem;

namespace znt {

// The insets of the application's windows, as the host sets them; none until then. Main thread.
class ZNTADS_INTERNAL SafeArea : public QObject
{
    Q_OBJECT

public:
    static SafeArea *instance();

    QMarginsF insets() const { return m_insets; }
    // Negative insets count as none.
    void setInsets(const QMarginsF &insets);

Q_SIGNALS:
    void changed();

private:
    QMarginsF m_insets;
};

// How far the insets of its window reach into the item: none at an edge that stays clear of them,
// and none in no window.
ZNTADS_INTERNAL QMarginsF safeInsetsOf(const QQuickItem *item);

} // namespace znt

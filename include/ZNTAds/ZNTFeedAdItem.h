#pragma once

#include <ZNTAds/ZNTAdViewDelegate.h>
#include <ZNTAds/ZNTAdsGlobal.h>
#include <ZNTAds/ZNTFeedAd.h>

#include <QtGui/QColor>
#include <QtQuick/QQuickItem>

#include <memory>

class ZNTFeedAdView;

/// Shows one feed ad in a row of a list, in the template that its style asks for. In QML: FeedAd.
///
/// Its clicks, closes and exposure are about the record that it shows: a click fires that record's
/// trackers and opens its target, a close sends negative feedback for it, and it is watched from
/// its arrival in a window until it is seen. It may be given another record at any time, as a list
/// that recycles its rows does. The template fills the item; implicitHeight is the height that
/// suits its width.
///
/// What a manager tells its delegate is about other views; here the signals tell. Whoever hears of
/// one may destroy the item. Main thread.
class ZNTADS_EXPORT ZNTFeedAdItem : public QQuickItem, public ZNTAdViewDelegate
{
    Q_OBJECT
    Q_INTERFACES(ZNTAdViewDelegate)
    /// The ad as ZNTFeedAds gives it; null, undefined and values of another type show nothing.
    Q_PROPERTY(QVariant adData READ adDataVariant WRITE setAdDataVariant NOTIFY adChanged)
    Q_PROPERTY(bool seen READ isSeen NOTIFY seenChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor RESET resetColor NOTIFY colorChanged)
    QML_NAMED_ELEMENT(FeedAd)

public:
    explicit ZNTFeedAdItem(QQuickItem *parent = nullptr);
    ~ZNTFeedAdItem() override;

    /// What it shows; a null one shows nothing. Setting another one while the item is on screen
    /// watches that one from then on.
    ZNTFeedAd ad() const;
    void setAd(const ZNTFeedAd &ad);
    QVariant adDataVariant() const;
    void setAdDataVariant(const QVariant &adData);
    /// Whether the ad counts as seen, here or in another item.
    bool isSeen() const;
    /// The ground under the template, which is clear and has dark texts. Unless set, it is white in
    /// an application whose palette is a dark one, and transparent otherwise.
    QColor color() const;
    void setColor(const QColor &color);
    void resetColor();
    /// The template; null while nothing is shown. The item owns it.
    ZNTFeedAdView *adView() const;

    /// Called by the template that was tapped.
    void adViewDidClick() override;
    /// Called by the template whose close button was tapped.
    void adViewDidClose() override;
    /// Called by the template that has entered a window.
    void adViewDidExposure(QQuickItem *view) override;

Q_SIGNALS:
    void adChanged();
    void seenChanged();
    void colorChanged();
    /// The ad entered a window.
    void appeared();
    /// The ad was clicked; the target is opened afterwards.
    void clicked();
    /// The target of a click was handed to the system.
    void targetOpened();
    /// The user does not want the ad; the host takes it out of its list.
    void closed();
    /// The ad counts as seen.
    void rendered();

protected:
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    QSGNode *updatePaintNode(QSGNode *node, UpdatePaintNodeData *data) override;

private:
    struct Q_DECL_HIDDEN Private;
    const std::unique_ptr<Private> d;
};

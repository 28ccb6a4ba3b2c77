#pragma once

#include <ZNTAds/ZNTAdViewDelegate.h>
#include <ZNTAds/ZNTDelegateRef.h>
#include <ZNTAds/ZNTFeedDelegate.h>

#include <QtCore/QHash>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QSet>
#include <QtCore/QSizeF>
#include <QtQuick/QQuickItem>

#include <memory>

/// Loads feed ads, makes views for them, and counts, follows and reports what happens to them.
///
/// Load; for each record that feedAdDidLoad() brings, make a view with createAdViewWithStyle(),
/// fill it, hand both to registerAdForView() and put the view into a list in the same iteration of
/// the event loop.
///
/// loadAdData() may be called from any thread, everything else on the main thread. Views and
/// delegate are held weakly and may be destroyed at any time, and so may the manager. Errors reach
/// feedAdDidFail() with domain "ZNTFeedManager": -1001 no media id, -1002 the answer cannot be
/// used; a failed request passes its own error on.
class ZNTADS_EXPORT ZNTFeedManager : public QObject, public ZNTAdViewDelegate
{
    Q_OBJECT
    Q_INTERFACES(ZNTAdViewDelegate)
    Q_PROPERTY(QString mediaId READ mediaId WRITE setMediaId NOTIFY mediaIdChanged)
    Q_PROPERTY(qint64 adCount READ adCount WRITE setAdCount NOTIFY adCountChanged)

public:
    explicit ZNTFeedManager(QObject *parent = nullptr);
    ~ZNTFeedManager() override;

    /// Who hears of the ads: any QObject that implements ZNTFeedDelegate, held weakly. Null for
    /// none.
    void setDelegate(const ZNTDelegateRef<ZNTFeedDelegate> &delegate);
    /// Who hears of the ads; empty when there is nobody any more.
    ZNTDelegateRef<ZNTFeedDelegate> delegate() const;

    /// The ad position; null until set. An empty one is sent as it is.
    QString mediaId() const;
    /// An empty text that QML assigns arrives as null.
    void setMediaId(const QString &mediaId);
    /// How many ads of an answer are kept at most; 1 until set. A negative number keeps all; 0
    /// keeps none, and the load still counts as a success.
    qint64 adCount() const;
    void setAdCount(qint64 count);

    /// Requests ads and returns at once. Loads may overlap: each answer replaces the records of the
    /// one before.
    void loadAdData();
    /// Takes an answer of the exchange as if it had been requested, without telling the delegate.
    /// A value of a wrong type counts as missing; an unusable answer changes nothing.
    /// @return whether it could be used
    bool handleAdResponse(const QJsonValue &response);
    /// Logs @p error and notifies the delegate of it in a later iteration of the event loop.
    void callbackWithError(const ZNTError &error);
    /// The records of the latest usable answer, in its order.
    QList<ZNTFeedAdDataPtr> loadedAdDataArray() const;
    /// The record that serves every click, close and exposure notice of the template views: the
    /// last one of the latest usable answer that had one, else null.
    ZNTFeedAdDataPtr adData() const;
    /// Puts another record in its place, until the next usable answer that has one.
    void setAdData(const ZNTFeedAdDataPtr &adData);

    /// The templates by their numbers.
    enum AdStyle : qint64 {
        PureImageStyle = 0,      ///< "XCT", ZNTPureImageAdView
        ImageTextStyle = 1,      ///< "XSTXW", ZNTImageTextAdView
        TextImageStyle = 2,      ///< "XSWXT", ZNTTextImageAdView
        FullImageStyle = 3,      ///< "XDT", ZNTFullImageAdView
        MixedStyle = 4,          ///< "XTWHH", ZNTMixedAdView
        OverlayStyle = 5,        ///< "XWZFC", ZNTOverlayAdView
        ThreeImageStyle = 6,     ///< "XST", ZNTThreeImageAdView
        ImageRightTextStyle = 7, ///< "XZTYW", ZNTImageRightTextAdView
        TextRightImageStyle = 8, ///< "XZWYT", ZNTTextRightImageAdView
    };
    Q_ENUM(AdStyle)

    /// The template number, an AdStyle, of a style code; 0 for an unknown or missing one.
    qint64 getAdStyleFromString(const QString &code) const;
    /// Makes the template view of a number 0 to 8, with this manager as its delegate; null for any
    /// other number. @p size is in points. The view is a ZNTFeedAdView, has no parent and belongs
    /// to the caller.
    QQuickItem *createAdViewWithStyle(qint64 style, const QSizeF &size);

    /// Watches @p view, which draws @p adData, ten times a second until it is seen, from a tenth of
    /// a second from now. A view that is in no window at a tick is watched no longer. A second call
    /// with the same record replaces the first. Null arguments only log a warning.
    ///
    /// A view that is to draw another record needs unregisterAdData() with the old one first. An
    /// item that lies over the view is not considered. Where the list has `clip`, only what lies
    /// within it counts; without it, what its rows draw beyond its edge counts too.
    void registerAdForView(QQuickItem *view, const ZNTFeedAdDataPtr &adData);
    /// Ends that watch and forgets the view. A null record only logs a warning.
    void unregisterAdData(const ZNTFeedAdDataPtr &adData);
    /// Ends the watch of each loaded record and forgets all records, views and reports. Watches of
    /// records from an earlier load go on.
    void deallocAllFeedProperty();

    /// The registered views by their records; a view that was destroyed is null. A key only tells
    /// records apart, as the record itself may be gone.
    QHash<const ZNTFeedAdData *, QPointer<QQuickItem>> registeredViews() const;
    /// Whether the record's view is being watched.
    bool isCheckingVisibility(const ZNTFeedAdDataPtr &adData) const;
    /// The ids of the ads whose exposure was reported; they are not reported again.
    QSet<QString> reportedAdIds() const;

    /// Called by a template view that was tapped: notifies the host, fires the trackers, opens the
    /// target.
    void adViewDidClick() override;
    /// Called by a template view whose close button was tapped: sends negative feedback and
    /// notifies the host, which takes the view away.
    void adViewDidClose() override;
    /// Called by a template view that has entered a window: notifies the host and watches the view
    /// on behalf of adData().
    void adViewDidExposure(QQuickItem *view) override;

Q_SIGNALS:
    void mediaIdChanged();
    void adCountChanged();

    // Each of these but the last follows the delegate's method, with or without a delegate. Whoever
    // hears of one may destroy the manager.
    /// feedAdDidLoad()
    void loaded(const QList<ZNTFeedAdDataPtr> &ads);
    /// feedAdDidFail()
    void failed(const ZNTError &error);
    /// feedAdDidVisible()
    void appeared();
    /// feedAdDidClick()
    void clicked();
    /// feedAdDidClose()
    void closed();
    /// feedAdDidCloseOtherController()
    void targetOpened();
    /// A record that was registered counts as seen.
    void rendered(const ZNTFeedAdDataPtr &adData);

private:
    friend class ZNTFeedAdView;
    void viewArrived(QQuickItem *view);

    class Q_DECL_HIDDEN Private;
    const std::unique_ptr<Private> d;
};

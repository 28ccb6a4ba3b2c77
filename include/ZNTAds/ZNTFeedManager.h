#pragma once

#include <ZNTAds/ZNTAdViewDelegate.h>
#include <ZNTAds/ZNTDelegateRef.h>
#include <ZNTAds/ZNTFeedDelegate.h>

#include <QtCore/QObject>
#include <QtCore/QSizeF>
#include <QtQuick/QQuickItem>

#include <memory>

/// Loads feed ads, makes views for them, and counts, follows and reports what happens to them.
///
/// loadAdData() may be called from any thread, everything else on the main thread. Views and
/// delegate are held weakly and may be destroyed at any time, and so may the manager. Errors reach
/// feedAdDidFail() with domain "ZNTFeedManager": -1001 no media id, -1002 the answer cannot be
/// used; a failed request passes its own error on.
class ZNTADS_EXPORT ZNTFeedManager : public QObject, public ZNTAdViewDelegate
{
    Q_OBJECT
    Q_INTERFACES(ZNTAdViewDelegate)

public:
    explicit ZNTFeedManager(QObject *parent = nullptr);
    ~ZNTFeedManager() override;

    /// Who hears of the ads: any QObject that implements ZNTFeedDelegate, held weakly.
    template <class Object>
    void setDelegate(Object *delegate)
    {
        setDelegate(ZNTDelegateRef<ZNTFeedDelegate>(delegate));
    }
    void setDelegate(const ZNTDelegateRef<ZNTFeedDelegate> &delegate);

    /// The ad position; null until set. An empty one is sent as it is.
    QString mediaId() const;
    void setMediaId(const QString &mediaId);
    /// How many ads of an answer are kept at most; 1 until set. A negative number keeps all, 0
    /// none.
    qint64 adCount() const;
    void setAdCount(qint64 count);

    /// Requests ads.
    void loadAdData();
    /// Takes an answer of the exchange as if it had been requested.
    /// @return whether it could be used
    bool handleAdResponse(const QJsonValue &response);
    /// The records of the latest usable answer, in its order.
    const QList<ZNTFeedAdDataPtr> &loadedAdDataArray() const;
    /// The last of them; it serves every click, close and exposure notice of the template views.
    ZNTFeedAdDataPtr adData() const;

    /// The template number of a style code; 0 for an unknown or missing one.
    qint64 getAdStyleFromString(const QString &code) const;
    /// Makes the template view of a number 0 to 8, with this manager as its delegate; null for any
    /// other number. @p size is in points. The view has no parent and belongs to the caller.
    QQuickItem *createAdViewWithStyle(qint64 style, const QSizeF &size);

    /// Watches @p view, which draws @p adData, until it is seen. Null arguments only log a warning.
    void registerAdForView(QQuickItem *view, const ZNTFeedAdDataPtr &adData);
    /// Ends that watch.
    void unregisterAdData(const ZNTFeedAdDataPtr &adData);
    /// Ends every watch and forgets all records, views and reports. Call it before letting go of
    /// the manager.
    void deallocAllFeedProperty();

    void adViewDidClick() override;
    void adViewDidClose() override;
    void adViewDidExposure(QQuickItem *view) override;

private:
    class Private;
    const std::unique_ptr<Private> d;
};

#pragma once

#include <ZNTAds/ZNTAdViewDelegate.h>
#include <ZNTAds/ZNTAdsGlobal.h>
#include <ZNTAds/ZNTDelegateRef.h>
#include <ZNTAds/ZNTNativeAdRenderProtocol.h>

#include <QtGui/QImage>
#include <QtQuick/QQuickItem>

#include <memory>

/// What the nine feed templates have in common: filling, pictures, source marking, tap, close, and
/// word of the arrival in a window.
///
/// A template lays itself out in whatever size it is given, draws on a clear background, and can be
/// put under any QQuickItem of any QQuickWindow. From the first setup, or from the first arrival in
/// a window on, its implicit height is the one that suits its width best. A tap anywhere but on the
/// close button is one click, and so is Return, Enter or Space while the template has the keyboard
/// focus; Escape stands for the close button. Delegate calls, tapped() and closeRequested() come in
/// the next iteration of the event loop, so whoever gets one may destroy the template. Main thread
/// only.
class ZNTADS_EXPORT ZNTFeedAdView : public QQuickItem, public ZNTNativeAdRenderProtocol
{
    Q_OBJECT
    Q_INTERFACES(ZNTNativeAdRenderProtocol)
    Q_PROPERTY(QString title READ title NOTIFY contentChanged)
    Q_PROPERTY(QString source READ source NOTIFY contentChanged)
    Q_PROPERTY(bool showsLogo READ showsLogo NOTIFY contentChanged)
    Q_PROPERTY(bool interactive READ isInteractive NOTIFY contentChanged)
    Q_PROPERTY(QImage picture READ picture NOTIFY pictureChanged)
    Q_PROPERTY(QImage logo READ logo NOTIFY logoChanged)
    QML_ELEMENT
    QML_UNCREATABLE("Use one of the nine templates")

public:
    ~ZNTFeedAdView() override;

    /// Who hears of taps, closes and arrivals: any QObject that implements ZNTAdViewDelegate, held
    /// weakly. Null for none.
    void setDelegate(const ZNTDelegateRef<ZNTAdViewDelegate> &delegate);
    ZNTDelegateRef<ZNTAdViewDelegate> delegate() const;

    /// Shows @p adData in place of what was shown before, starts loading its pictures (http or
    /// https) and makes the template react to taps. A picture that cannot be had leaves its place
    /// empty; a logo at the picture's address is fetched together with it. What an earlier setup
    /// still loads never arrives. Null does nothing.
    void setupWithAdsData(const ZNTFeedAdDataPtr &adData) override;

    /// The record's title, cut to a length that any template can show; null or empty makes the
    /// template show its placeholder.
    QString title() const;
    /// The advertiser's name, or "广告".
    QString source() const;
    /// Whether the logo's place is shown instead of the source's label.
    bool showsLogo() const;
    /// Whether taps count: since the first setup.
    bool isInteractive() const;
    /// The record's first picture; null until it has arrived.
    QImage picture() const;
    /// The advertiser's logo; null until it has arrived.
    QImage logo() const;

    /// Notifies the delegate of a click, at once.
    void adViewTapped();
    /// Notifies the delegate of a close, at once.
    void closeButtonClicked();

Q_SIGNALS:
    void contentChanged();
    void pictureChanged();
    void logoChanged();
    /// The user tapped the template; the delegate has been notified.
    void tapped();
    /// The user wants the template closed; the delegate has been notified.
    void closeRequested();

protected:
    /// A template that the QML file of that name draws.
    ZNTFeedAdView(const QString &part, QQuickItem *parent);

    void itemChange(ItemChange change, const ItemChangeData &data) override;

private:
    friend class ZNTFeedManager;
    bool takeArrival();

    void createPart();
    void updateImplicitSize();
    void notifyArrival();

    struct Q_DECL_HIDDEN Private;
    const std::unique_ptr<Private> d;
};

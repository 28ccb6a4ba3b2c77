// What an ad's view shows: its texts, its picture, its logo.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QImage>
#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <memory>

namespace znt {

// Fetches the pictures. What was ordered before a startOver() never arrives. Main thread.
class AdContent : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("It belongs to the view of an ad")
    Q_PROPERTY(QString text READ text NOTIFY changed)
    Q_PROPERTY(QString source READ source NOTIFY changed)
    Q_PROPERTY(bool hasLogo READ hasLogo NOTIFY changed)
    Q_PROPERTY(QImage logo READ logo NOTIFY logoChanged)
    Q_PROPERTY(QImage picture READ picture NOTIFY pictureChanged)

public:
    AdContent();
    ~AdContent() override;

    // Drops what is still on its way.
    void startOver();

    // Texts are cut to a length that any view can show: longer ones are laid out whole before they
    // are cut, which takes its time.
    QString text() const { return m_text; }
    void setText(const QString &text);
    // "广告" where there is no name.
    QString source() const { return m_source; }
    void setSource(const QString &source);

    // A logo that cannot be had leaves its place empty; the label does not come back.
    bool hasLogo() const { return m_hasLogo; }
    QImage logo() const { return m_logo; }
    // Where the picture's address is the same, it is fetched once, for both.
    void fetchLogo(bool hasLogo, const QString &url, const QString &pictureUrl);

    // A picture that cannot be had leaves the one before.
    QImage picture() const { return m_picture; }
    void fetchPicture(const QString &url);
    void clearPicture();

Q_SIGNALS:
    void changed();
    void logoChanged();
    void pictureChanged();

protected:
    // Who receives what the present setup fetches.
    QObject *setup() const { return m_setup.get(); }
    void setPicture(const QImage &picture);

private:
    void setLogo(const QImage &logo);

    QString m_text;
    QString m_source;
    bool m_hasLogo = false;
    bool m_logoIsPicture = false;
    QImage m_logo;
    QImage m_picture;
    std::unique_ptr<QObject> m_setup;
};

} // namespace znt

// The library's own pictures.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QImage>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace znt {

// A picture by its name in the application's resources: the host's own `:/NAME` where there is one,
// else the library's in `:/ZNTAdsResources.bundle/`. With or without ".png", and "@2x" or "@3x" for
// more than one pixel a point; the variant that suits the device best is taken.
//
// Its size is known at once, its pixels when the thread pool has decoded them. A picture that is
// missing or broken has neither.
class ZNTADS_INTERNAL ResourceImage : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY changed)
    Q_PROPERTY(QSizeF naturalSize READ naturalSize NOTIFY changed)
    Q_PROPERTY(QImage image READ image NOTIFY changed)

public:
    explicit ResourceImage(QObject *parent = nullptr);

    QString name() const { return m_name; }
    void setName(const QString &name);
    QSizeF naturalSize() const { return m_naturalSize; } // in points
    QImage image() const { return m_image; }

Q_SIGNALS:
    void changed();

private:
    void decode(const QString &file, int scale);

    QString m_name;
    QSizeF m_naturalSize{0, 0};
    QImage m_image;
};

} // namespace znt

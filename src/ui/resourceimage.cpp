#include "ui/resourceimage.h"

#include "support/mainthread.h"

#include <QGuiApplication>
#include <QImageReader>

#include <cmath>

namespace znt {

namespace {

struct Variant
{
    QString file;
    int scale = 1;
    QSize pixels; // valid when the file is a picture
};

// The pixel densities, the most suitable first: enough, but no more than that.
QList<int> scalesFor(double ratio)
{
    const int wanted = qBound(1, int(std::ceil(ratio)), 3);
    QList<int> scales;
    for (int scale = wanted; scale <= 3; ++scale)
        scales.append(scale);
    for (int scale = wanted - 1; scale >= 1; --scale)
        scales.append(scale);
    return scales;
}

Variant find(const QString &name)
{
    const QList<int> scales = scalesFor(qGuiApp->devicePixelRatio());
    for (const char *folder : {":/", ":/ZNTAdsResources.bundle/"}) {
        for (const int scale : scales) {
            const QString density = scale > 1 ? QStringLiteral("@%1x").arg(scale) : QString();
            for (const char *ending : {".png", ""}) {
                const QString file = QLatin1String(folder) + name + density + QLatin1String(ending);
                const QSize pixels = QImageReader(file).size();
                if (pixels.isValid())
                    return {file, scale, pixels};
            }
        }
    }
    return {};
}

} // namespace

ResourceImage::ResourceImage(QObject *parent)
    : QObject(parent)
{
}

void ResourceImage::setName(const QString &name)
{
    if (name == m_name)
        return;
    m_name = name;
    m_image = {};
    const Variant found = find(name);
    m_naturalSize = found.pixels.isValid() ? QSizeF(found.pixels) / found.scale : QSizeF(0, 0);
    Q_EMIT changed();
    if (found.pixels.isValid())
        decode(found.file, found.scale);
}

void ResourceImage::decode(const QString &file, int scale)
{
    inPool(
        this,
        [file, scale] {
            QImage image(file);
            image.setDevicePixelRatio(scale);
            return image;
        },
        [this, name = m_name](const QImage &image) {
            if (m_name != name)
                return;
            m_image = image;
            Q_EMIT changed();
        });
}

} // namespace znt

// The item that shows a picture.
#pragma once

#include "ui/imagefit.h"

#include <QQmlEngine>
#include <QQuickItem>

namespace znt {

// Makes pictures known to QML's tools as a type of value.
struct ImageForQml
{
    Q_GADGET
    QML_FOREIGN(QImage)
    QML_ANONYMOUS
};

// Draws a picture into its bounds, clipped to them and to their rounded corners. Scaling and
// rounding happen on the thread pool whenever something that they depend on has changed; the last
// result is drawn, stretched if need be, until the next is there.
class ZNTADS_INTERNAL ImageView : public QQuickItem
{
    Q_OBJECT
    Q_PROPERTY(QImage image READ image WRITE setImage NOTIFY imageChanged)
    Q_PROPERTY(bool hasImage READ hasImage NOTIFY imageChanged)
    Q_PROPERTY(QSizeF naturalSize READ naturalSize NOTIFY imageChanged)
    Q_PROPERTY(QString contentMode READ contentMode WRITE setContentMode NOTIFY contentModeChanged)
    Q_PROPERTY(
        qreal cornerRadius READ cornerRadius WRITE setCornerRadius NOTIFY cornerRadiusChanged)
    Q_PROPERTY(bool hidden READ isHidden WRITE setHidden NOTIFY hiddenChanged)
    Q_PROPERTY(bool ready READ isReady NOTIFY readyChanged)
    QML_NAMED_ELEMENT(ImageView)

public:
    explicit ImageView(QQuickItem *parent = nullptr);

    QImage image() const { return m_image; }
    void setImage(const QImage &image);
    bool hasImage() const { return !m_image.isNull(); }
    // In points; empty without a picture.
    QSizeF naturalSize() const;

    // "scaleToFill", "aspectFit", "aspectFill" or "center"; another name changes nothing.
    QString contentMode() const;
    void setContentMode(const QString &name);
    qreal cornerRadius() const { return m_cornerRadius; }
    void setCornerRadius(qreal radius);

    // The view's own state, whatever its ancestors'. It governs `visible`, which is not to be set
    // beside it.
    bool isHidden() const { return m_hidden; }
    void setHidden(bool hidden);

    // Whether what is drawn is up to date.
    bool isReady() const;

Q_SIGNALS:
    void imageChanged();
    void contentModeChanged();
    void cornerRadiusChanged();
    void hiddenChanged();
    void readyChanged();

protected:
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    QSGNode *updatePaintNode(QSGNode *node, UpdatePaintNodeData *data) override;

private:
    ImageFit wanted() const;
    void changed();
    void prepare();
    void take(const ImageFit &request, const QImage &drawn);

    QImage m_image;
    ContentMode m_contentMode = ContentMode::ScaleToFill;
    qreal m_cornerRadius = 0;
    bool m_hidden = false;

    bool m_scheduled = false; // prepare() is in the event queue
    bool m_busy = false;      // the pool is at work
    ImageFit m_drawnFor;
    QImage m_drawn;
    bool m_textureIsOld = false;
};

} // namespace znt

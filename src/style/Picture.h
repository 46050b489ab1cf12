#pragma once

#include <QImage>
#include <QQuickPaintedItem>
#include <QVariant>
#include <qqmlintegration.h>

namespace nimbarrow {

/// Draws a picture, cropped to fill the item with rounded corners (or fitted inside it).
class Picture : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    /// A QImage; the views only hand it on.
    Q_PROPERTY(QVariant image READ imageValue WRITE setImageValue NOTIFY imageChanged FINAL)
    /// Of the corners, in points.
    Q_PROPERTY(qreal radius READ radius WRITE setRadius NOTIFY radiusChanged FINAL)
    /// Fits the picture inside instead of cropping it.
    Q_PROPERTY(bool fit READ fit WRITE setFit NOTIFY fitChanged FINAL)
    /// A fitted picture whose longest side has fewer pixels than this is made no larger than it is.
    Q_PROPERTY(int wholeBelow MEMBER m_wholeBelow NOTIFY wholeBelowChanged FINAL)
    /// There is a picture to draw.
    Q_PROPERTY(bool loaded READ isLoaded NOTIFY loadedChanged FINAL)

public:
    explicit Picture(QQuickItem* parent = nullptr);

    [[nodiscard]] const QImage& image() const { return m_image; }
    void setImage(const QImage& image);
    [[nodiscard]] qreal radius() const { return m_radius; }
    void setRadius(qreal radius);
    [[nodiscard]] bool fit() const { return m_fit; }
    void setFit(bool fit);
    [[nodiscard]] bool isLoaded() const { return !m_image.isNull(); }

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void imageChanged();
    void radiusChanged();
    void fitChanged();
    void wholeBelowChanged();
    void loadedChanged();

private:
    [[nodiscard]] QVariant imageValue() const { return m_image; }
    void setImageValue(const QVariant& image) { setImage(image.value<QImage>()); }
    /// The picture in that many pixels.
    [[nodiscard]] const QImage& scaled(QSize pixels);

    qreal m_radius = 0;
    bool m_fit = false;
    int m_wholeBelow = 0;
    QImage m_image;
    QImage m_scaled;
};

} // namespace nimbarrow

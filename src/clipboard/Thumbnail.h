#pragma once

#include <QImage>
#include <QQuickPaintedItem>
#include <QUrl>
#include <qqmlintegration.h>

namespace nimbarrow {

/// Draws the thumbnail of an image file, cropped to fill the item with rounded corners (or fitted inside it).
/// Empty until it is loaded.
class Thumbnail : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QUrl source READ source WRITE setSource NOTIFY sourceChanged FINAL)
    /// The size to ask the loader for: the longest side in pixels.
    Q_PROPERTY(int maxPixel READ maxPixel WRITE setMaxPixel NOTIFY maxPixelChanged FINAL)
    /// Of the corners, in points.
    Q_PROPERTY(qreal radius READ radius WRITE setRadius NOTIFY radiusChanged FINAL)
    /// Fits the picture inside instead of cropping it, and makes a small one no larger than it is.
    Q_PROPERTY(bool fit READ fit WRITE setFit NOTIFY fitChanged FINAL)
    Q_PROPERTY(bool loaded READ isLoaded NOTIFY loadedChanged FINAL)

public:
    explicit Thumbnail(QQuickItem* parent = nullptr);

    [[nodiscard]] QUrl source() const { return m_source; }
    void setSource(const QUrl& source);
    [[nodiscard]] int maxPixel() const { return m_maxPixel; }
    void setMaxPixel(int maxPixel);
    [[nodiscard]] qreal radius() const { return m_radius; }
    void setRadius(qreal radius);
    [[nodiscard]] bool fit() const { return m_fit; }
    void setFit(bool fit);
    [[nodiscard]] bool isLoaded() const { return !m_image.isNull(); }

    void paint(QPainter* painter) override;

    /// The loader that every thumbnail of the process asks; set once before the first view is made.
    static void setLoader(class ThumbnailLoader* loader);

Q_SIGNALS:
    void sourceChanged();
    void maxPixelChanged();
    void radiusChanged();
    void fitChanged();
    void loadedChanged();

private:
    void load();
    void setImage(const QImage& image);
    /// The picture in the pixels that `bounds` has on the screen.
    [[nodiscard]] const QImage& scaled(QSize pixels);

    QUrl m_source;
    int m_maxPixel = 200;
    qreal m_radius = 0;
    bool m_fit = false;
    QImage m_image;
    QImage m_scaled;
};

} // namespace nimbarrow

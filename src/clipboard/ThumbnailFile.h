#pragma once

#include <QImage>
#include <QObject>
#include <QUrl>
#include <QVariant>
#include <qqmlintegration.h>

namespace nimbarrow {

class ThumbnailLoader;

/// The thumbnail of an image file, for a view to draw. There is none until it is loaded.
class ThumbnailFile : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QUrl source READ source WRITE setSource NOTIFY sourceChanged FINAL)
    /// The size to ask the loader for: the longest side in pixels.
    Q_PROPERTY(int maxPixel READ maxPixel WRITE setMaxPixel NOTIFY maxPixelChanged FINAL)
    /// A QImage, null until it is loaded.
    Q_PROPERTY(QVariant image READ imageValue NOTIFY imageChanged FINAL)

public:
    using QObject::QObject;

    [[nodiscard]] QUrl source() const { return m_source; }
    void setSource(const QUrl& source);
    [[nodiscard]] int maxPixel() const { return m_maxPixel; }
    void setMaxPixel(int maxPixel);

    /// The loader that every thumbnail of the process asks; set once before the first view is made.
    static void setLoader(ThumbnailLoader* loader);

Q_SIGNALS:
    void sourceChanged();
    void maxPixelChanged();
    void imageChanged();

private:
    void load();
    void setImage(const QImage& image);
    [[nodiscard]] QVariant imageValue() const { return m_image; }

    QUrl m_source;
    int m_maxPixel = 200;
    QImage m_image;
};

} // namespace nimbarrow

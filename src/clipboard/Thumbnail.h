#pragma once

#include "style/Picture.h"

#include <QUrl>

namespace nimbarrow {

/// Draws the thumbnail of an image file. Empty until it is loaded.
class Thumbnail : public Picture {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QUrl source READ source WRITE setSource NOTIFY sourceChanged FINAL)
    /// The size to ask the loader for: the longest side in pixels.
    Q_PROPERTY(int maxPixel READ maxPixel WRITE setMaxPixel NOTIFY maxPixelChanged FINAL)

public:
    explicit Thumbnail(QQuickItem* parent = nullptr);

    [[nodiscard]] QUrl source() const { return m_source; }
    void setSource(const QUrl& source);
    [[nodiscard]] int maxPixel() const { return m_maxPixel; }
    void setMaxPixel(int maxPixel);

    /// The loader that every thumbnail of the process asks; set once before the first view is made.
    static void setLoader(class ThumbnailLoader* loader);

Q_SIGNALS:
    void sourceChanged();
    void maxPixelChanged();

private:
    void load();

    QUrl m_source;
    int m_maxPixel = 200;
};

} // namespace nimbarrow

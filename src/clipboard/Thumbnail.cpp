#include "clipboard/Thumbnail.h"

#include "clipboard/ThumbnailLoader.h"

#include <QPointer>

namespace nimbarrow {

namespace {

QPointer<ThumbnailLoader>& loader()
{
    static QPointer<ThumbnailLoader> loader;
    return loader;
}

} // namespace

Thumbnail::Thumbnail(QQuickItem* parent)
    : Picture(parent)
{
}

void Thumbnail::setLoader(ThumbnailLoader* loader)
{
    nimbarrow::loader() = loader;
}

void Thumbnail::setSource(const QUrl& source)
{
    if (source == m_source)
        return;
    m_source = source;
    Q_EMIT sourceChanged();
    load();
}

void Thumbnail::setMaxPixel(int maxPixel)
{
    if (maxPixel == m_maxPixel)
        return;
    m_maxPixel = maxPixel;
    Q_EMIT maxPixelChanged();
    load();
}

void Thumbnail::load()
{
    setImage({});
    if (m_source.isEmpty() || !loader())
        return;
    loader()->image(
        m_source, m_maxPixel, this, [this, source = m_source, maxPixel = m_maxPixel](const QImage& image) {
            // The item may show another file by now.
            if (source == m_source && maxPixel == m_maxPixel)
                setImage(image);
        });
}

} // namespace nimbarrow

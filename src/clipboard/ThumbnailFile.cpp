#include "clipboard/ThumbnailFile.h"

#include "images/ThumbnailLoader.h"

#include <QPointer>

namespace nimbarrow {

namespace {

QPointer<ThumbnailLoader>& loader()
{
    static QPointer<ThumbnailLoader> loader;
    return loader;
}

} // namespace

void ThumbnailFile::setLoader(ThumbnailLoader* loader)
{
    nimbarrow::loader() = loader;
}

void ThumbnailFile::setSource(const QUrl& source)
{
    if (source == m_source)
        return;
    m_source = source;
    Q_EMIT sourceChanged();
    load();
}

void ThumbnailFile::setMaxPixel(int maxPixel)
{
    if (maxPixel == m_maxPixel)
        return;
    m_maxPixel = maxPixel;
    Q_EMIT maxPixelChanged();
    load();
}

void ThumbnailFile::load()
{
    setImage({});
    if (m_source.isEmpty() || !loader())
        return;
    loader()->image(
        m_source, m_maxPixel, this, [this, source = m_source, maxPixel = m_maxPixel](const QImage& image) {
            // Another file may be wanted by now.
            if (source == m_source && maxPixel == m_maxPixel)
                setImage(image);
        });
}

void ThumbnailFile::setImage(const QImage& image)
{
    if (image.isNull() && m_image.isNull())
        return;
    m_image = image;
    Q_EMIT imageChanged();
}

} // namespace nimbarrow

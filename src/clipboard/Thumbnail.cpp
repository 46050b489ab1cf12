#include "clipboard/Thumbnail.h"

#include "clipboard/ThumbnailLoader.h"

#include <QPainter>
#include <QPointer>

#include <algorithm>

namespace nimbarrow {

namespace {

QPointer<ThumbnailLoader>& loader()
{
    static QPointer<ThumbnailLoader> loader;
    return loader;
}

} // namespace

Thumbnail::Thumbnail(QQuickItem* parent)
    : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
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

void Thumbnail::setRadius(qreal radius)
{
    if (radius == m_radius)
        return;
    m_radius = radius;
    Q_EMIT radiusChanged();
    update();
}

void Thumbnail::setFit(bool fit)
{
    if (fit == m_fit)
        return;
    m_fit = fit;
    Q_EMIT fitChanged();
    update();
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

void Thumbnail::setImage(const QImage& image)
{
    const auto wasLoaded = isLoaded();
    m_image = image;
    m_scaled = {};
    update();
    if (isLoaded() != wasLoaded)
        Q_EMIT loadedChanged();
}

const QImage& Thumbnail::scaled(QSize pixels)
{
    // The painter's own scaling skips pixels when it shrinks a picture by more than half.
    if (m_scaled.size() != pixels)
        m_scaled = m_image.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return m_scaled;
}

void Thumbnail::paint(QPainter* painter)
{
    const auto bounds = boundingRect();
    if (m_image.isNull() || bounds.isEmpty())
        return;
    const QSizeF whole(m_image.size());
    auto size = whole.scaled(bounds.size(), m_fit ? Qt::KeepAspectRatio : Qt::KeepAspectRatioByExpanding);
    // A picture below the size asked for is the whole one; larger than that it would only be blurred.
    if (m_fit && std::max(whole.width(), whole.height()) < m_maxPixel && whole.width() < size.width())
        size = whole;
    QRectF place({}, size);
    place.moveCenter(bounds.center());

    const auto ratio = std::max(1.0, painter->deviceTransform().m11());
    // On whole pixels, or the picture's edges blur.
    place.moveTopLeft((place.topLeft() * ratio).toPoint().toPointF() / ratio);
    const auto& picture = scaled((size * ratio).toSize().expandedTo({ 1, 1 }));
    // As a brush the picture has smooth corners, which a clip would not have.
    QBrush brush(picture);
    brush.setTransform(QTransform::fromTranslate(place.x(), place.y())
                           .scale(place.width() / picture.width(), place.height() / picture.height()));
    painter->setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter->setPen(Qt::NoPen);
    painter->setBrush(brush);
    painter->drawRoundedRect(place.intersected(bounds), m_radius, m_radius);
}

} // namespace nimbarrow

#include "style/Picture.h"

#include <QPainter>

#include <algorithm>

namespace nimbarrow {

Picture::Picture(QQuickItem* parent)
    : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
}

void Picture::setImage(const QImage& image)
{
    // The same picture shares its pixels, so comparing those would only cost time.
    if (image.cacheKey() == m_image.cacheKey())
        return;
    const auto wasLoaded = isLoaded();
    m_image = image;
    m_scaled = {};
    update();
    Q_EMIT imageChanged();
    if (isLoaded() != wasLoaded)
        Q_EMIT loadedChanged();
}

void Picture::setRadius(qreal radius)
{
    if (radius == m_radius)
        return;
    m_radius = radius;
    Q_EMIT radiusChanged();
    update();
}

void Picture::setFit(bool fit)
{
    if (fit == m_fit)
        return;
    m_fit = fit;
    Q_EMIT fitChanged();
    update();
}

const QImage& Picture::scaled(QSize pixels)
{
    // The painter's own scaling skips pixels when it shrinks a picture by more than half.
    if (m_scaled.size() != pixels)
        m_scaled = m_image.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return m_scaled;
}

void Picture::paint(QPainter* painter)
{
    const auto bounds = boundingRect();
    if (m_image.isNull() || bounds.isEmpty())
        return;
    const QSizeF whole(m_image.size());
    auto size = whole.scaled(bounds.size(), m_fit ? Qt::KeepAspectRatio : Qt::KeepAspectRatioByExpanding);
    // Larger than that it would only be blurred.
    if (m_fit && std::max(whole.width(), whole.height()) < m_wholeBelow && whole.width() < size.width())
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

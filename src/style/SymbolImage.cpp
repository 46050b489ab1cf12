#include "style/SymbolImage.h"

#include <QPainter>
#include <QPixmapCache>
#include <QQuickWindow>
#include <QSGImageNode>
#include <QSvgRenderer>

#include <memory>

using namespace Qt::StringLiterals;

namespace nimbarrow {

SymbolImage::SymbolImage(QQuickItem* parent)
    : QQuickItem(parent)
{
    setFlag(ItemHasContents);
}

void SymbolImage::setName(const QString& name)
{
    if (name == m_name)
        return;
    m_name = name;
    drawAnew();
    Q_EMIT nameChanged();
}

void SymbolImage::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size())
        drawAnew();
}

void SymbolImage::itemChange(ItemChange change, const ItemChangeData& value)
{
    QQuickItem::itemChange(change, value);
    if (change == ItemDevicePixelRatioHasChanged)
        drawAnew();
}

void SymbolImage::drawAnew()
{
    m_isDrawn = false;
    update();
}

QImage SymbolImage::drawn(QSize pixels) const
{
    const auto key = u"symbol %1 %2x%3"_s.arg(m_name).arg(pixels.width()).arg(pixels.height());
    QPixmap kept;
    if (QPixmapCache::find(key, &kept))
        return kept.toImage();
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    QSvgRenderer(u":/qt/qml/Nimbarrow/Style/symbols/"_s + m_name + u".svg"_s).render(&painter);
    painter.end();
    QPixmapCache::insert(key, QPixmap::fromImage(image));
    return image;
}

QSGNode* SymbolImage::updatePaintNode(QSGNode* oldNode, UpdatePaintNodeData* /*data*/)
{
    std::unique_ptr<QSGImageNode> node(static_cast<QSGImageNode*>(oldNode));
    const auto pixels = (size() * window()->effectiveDevicePixelRatio()).toSize();
    if (m_name.isEmpty() || pixels.isEmpty())
        return nullptr;
    if (!node) {
        node.reset(window()->createImageNode());
        node->setOwnsTexture(true);
        // Anything but copying the pixels would blur them.
        node->setFiltering(QSGTexture::Nearest);
        m_isDrawn = false;
    }
    if (!m_isDrawn)
        node->setTexture(
            window()->createTextureFromImage(drawn(pixels), QQuickWindow::TextureHasAlphaChannel));
    m_isDrawn = true;
    node->setRect(boundingRect());
    return node.release();
}

} // namespace nimbarrow

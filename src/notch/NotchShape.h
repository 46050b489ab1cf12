#pragma once

#include <QPainterPath>
#include <QQuickPaintedItem>
#include <QRectF>
#include <qqmlintegration.h>

namespace nimbarrow {

/// The outline that every mode is drawn in, filled black: it hangs from the top edge, flares into it with two
/// concave corners and ends in two round ones.
class NotchShape : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    /// Radius of the flares in points; limited to what the size allows, as is the other.
    Q_PROPERTY(qreal topRadius READ topRadius WRITE setTopRadius NOTIFY outlineChanged FINAL)
    Q_PROPERTY(qreal bottomRadius READ bottomRadius WRITE setBottomRadius NOTIFY outlineChanged FINAL)

public:
    explicit NotchShape(QQuickItem* parent = nullptr);

    [[nodiscard]] qreal topRadius() const { return m_topRadius; }
    void setTopRadius(qreal radius);
    [[nodiscard]] qreal bottomRadius() const { return m_bottomRadius; }
    void setBottomRadius(qreal radius);

    /// Origin at the top left, y down, in points.
    [[nodiscard]] static QPainterPath path(const QRectF& rect, qreal topRadius, qreal bottomRadius);

    /// The outline as it is drawn now, in window coordinates.
    [[nodiscard]] QPainterPath outline() const;

    void paint(QPainter* painter) override;

Q_SIGNALS:
    /// Size, place or a radius has changed; sent once for each frame that is drawn.
    void outlineChanged();

protected:
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void updatePolish() override;

private:
    void setRadius(qreal& field, qreal radius);

    qreal m_topRadius = 0;
    qreal m_bottomRadius = 0;
};

} // namespace nimbarrow

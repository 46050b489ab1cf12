#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <qqmlintegration.h>

namespace nimbarrow {

/// A rounded rectangle outlined with dashes.
class DashedFrame : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY lookChanged FINAL)
    /// In points, as is the radius.
    Q_PROPERTY(qreal lineWidth READ lineWidth WRITE setLineWidth NOTIFY lookChanged FINAL)
    Q_PROPERTY(qreal radius READ radius WRITE setRadius NOTIFY lookChanged FINAL)

public:
    explicit DashedFrame(QQuickItem* parent = nullptr);

    [[nodiscard]] QColor color() const { return m_color; }
    void setColor(const QColor& color) { assign(m_color, color); }
    [[nodiscard]] qreal lineWidth() const { return m_lineWidth; }
    void setLineWidth(qreal width) { assign(m_lineWidth, width); }
    [[nodiscard]] qreal radius() const { return m_radius; }
    void setRadius(qreal radius) { assign(m_radius, radius); }

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void lookChanged();

private:
    template <typename T>
    void assign(T& field, const T& value)
    {
        if (field == value)
            return;
        field = value;
        Q_EMIT lookChanged();
        update();
    }

    QColor m_color = Qt::white;
    qreal m_lineWidth = 1;
    qreal m_radius = 0;
};

} // namespace nimbarrow

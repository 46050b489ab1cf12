#pragma once

#include <QImage>
#include <QQuickItem>
#include <qqmlintegration.h>

namespace nimbarrow {

/// One of the program's own drawings, in exactly the pixels that the item covers. It needs none of the
/// libraries that read pictures of every kind, which a view's first picture would bring in.
class SymbolImage : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// Empty for no drawing.
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged FINAL)

public:
    explicit SymbolImage(QQuickItem* parent = nullptr);

    [[nodiscard]] QString name() const { return m_name; }
    void setName(const QString& name);

Q_SIGNALS:
    void nameChanged();

protected:
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData& value) override;
    QSGNode* updatePaintNode(QSGNode* oldNode, UpdatePaintNodeData* data) override;

private:
    [[nodiscard]] QImage drawn(QSize pixels) const;
    void drawAnew();

    QString m_name;
    bool m_isDrawn = false;
};

} // namespace nimbarrow

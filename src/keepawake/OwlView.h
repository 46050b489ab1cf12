#pragma once

#include "keepawake/OwlMotion.h"

#include <QPointer>
#include <QQuickPaintedItem>
#include <qqmlintegration.h>

namespace nimbarrow {

/// The owl as it stands now.
class OwlView : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(nimbarrow::OwlMotion* motion READ motion WRITE setMotion NOTIFY inputChanged REQUIRED FINAL)
    Q_PROPERTY(bool awake READ isAwake WRITE setAwake NOTIFY inputChanged FINAL)
    /// Whether somebody can see it; else it stands still.
    Q_PROPERTY(bool active READ isActive WRITE setActive NOTIFY inputChanged FINAL)
    Q_PROPERTY(bool reduceMotion READ reduceMotion WRITE setReduceMotion NOTIFY inputChanged FINAL)
    /// Its width in points; it is a little higher than that.
    Q_PROPERTY(qreal size READ size WRITE setSize NOTIFY sizeChanged FINAL)

public:
    explicit OwlView(QQuickItem* parent = nullptr);
    ~OwlView() override;

    [[nodiscard]] OwlMotion* motion() const { return m_motion; }
    void setMotion(OwlMotion* motion);
    [[nodiscard]] bool isAwake() const { return m_awake; }
    void setAwake(bool awake) { assign(m_awake, awake); }
    [[nodiscard]] bool isActive() const { return m_active; }
    void setActive(bool active) { assign(m_active, active); }
    [[nodiscard]] bool reduceMotion() const { return m_reduceMotion; }
    void setReduceMotion(bool reduce) { assign(m_reduceMotion, reduce); }
    [[nodiscard]] qreal size() const { return m_size; }
    void setSize(qreal size);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void inputChanged();
    void sizeChanged();

protected:
    void componentComplete() override;

private:
    void assign(bool& field, bool value);
    void drive();

    // There is one motion, and views of it come and go with the surface.
    QPointer<OwlMotion> m_motion;
    bool m_awake = false;
    bool m_active = false;
    bool m_reduceMotion = false;
    qreal m_size = 0;
};

} // namespace nimbarrow

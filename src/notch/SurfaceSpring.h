#pragma once

#include <QEasingCurve>
#include <QObject>
#include <qqmlintegration.h>

namespace nimbarrow {

/// The motion of the surface as a curve that animations can follow.
class SurfaceSpring : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QEasingCurve curve READ curve CONSTANT FINAL)
    /// Milliseconds until the spring rests.
    Q_PROPERTY(int duration READ duration CONSTANT FINAL)

public:
    using QObject::QObject;

    [[nodiscard]] static QEasingCurve curve();
    [[nodiscard]] static int duration();

    /// How far a spring that was let go from rest has come, 0 to a little over 1; `progress` is a part of
    /// `duration`.
    [[nodiscard]] static qreal position(qreal progress);
};

} // namespace nimbarrow

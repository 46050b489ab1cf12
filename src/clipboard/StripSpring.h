#pragma once

#include <QEasingCurve>
#include <QObject>
#include <qqmlintegration.h>

namespace nimbarrow {

/// The motion of the images in their strip when one comes or goes, as a curve that animations can follow.
class StripSpring : public QObject {
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
};

} // namespace nimbarrow

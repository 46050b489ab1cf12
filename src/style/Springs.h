#pragma once

#include <QEasingCurve>
#include <QObject>
#include <qqmlintegration.h>

#include <chrono>

namespace nimbarrow {

/// The springs that things move by, as curves that animations can follow. Any thread.
class Springs : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    /// Of the surface: its size and its corners.
    Q_PROPERTY(QEasingCurve surface READ surface CONSTANT FINAL)
    /// Milliseconds until it rests.
    Q_PROPERTY(int surfaceDuration READ surfaceDuration CONSTANT FINAL)
    /// Of the images in their strip when one comes or goes.
    Q_PROPERTY(QEasingCurve strip READ strip CONSTANT FINAL)
    Q_PROPERTY(int stripDuration READ stripDuration CONSTANT FINAL)

public:
    using QObject::QObject;

    /// Until the panel may shrink to the notch, or back from a preview, after the spring was let go.
    static constexpr std::chrono::milliseconds surfaceRest { 280 };

    [[nodiscard]] static QEasingCurve surface();
    [[nodiscard]] static int surfaceDuration() { return static_cast<int>(surfaceRest.count()); }
    [[nodiscard]] static QEasingCurve strip();
    [[nodiscard]] static int stripDuration();
};

} // namespace nimbarrow

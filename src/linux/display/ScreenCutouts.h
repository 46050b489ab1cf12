#pragma once

#include "platform/Screens.h"

#include <QObject>
#include <QRect>
#include <QRectF>
#include <QSize>
#include <QString>

#include <optional>

namespace nimbarrow {

/// Where a screen's camera cut-out is, as far as this system knows.
class ScreenCutouts : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// The box around the cut-out at the top edge of the screen called `screen`, in device pixels from the
    /// screen's top left. `mode` is the screen's size in device pixels.
    [[nodiscard]] virtual std::optional<QRectF> topCutout(const QString& screen, QSize mode) const = 0;

    /// Writes down that this box is the only cut-out of a screen, or an empty one that it has none, in device
    /// pixels. Before everything else that is known of the screen.
    [[nodiscard]] virtual NotchDeclaration declare(const QString& screen, QSize mode, const QRect& box) = 0;

    [[nodiscard]] virtual bool isBuiltIn(const QString& screen) const = 0;

Q_SIGNALS:
    /// Some answer may have changed.
    void changed();
};

} // namespace nimbarrow

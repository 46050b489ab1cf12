#pragma once

#include <QObject>
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

    /// How a person declares the cut-out of a screen, in words for a terminal.
    [[nodiscard]] virtual QString howToDeclare(const QString& screen, QSize mode) const = 0;

Q_SIGNALS:
    /// Some answer may have changed.
    void changed();
};

} // namespace nimbarrow

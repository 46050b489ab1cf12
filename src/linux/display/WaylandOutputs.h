#pragma once

#include "linux/display/ScreenMode.h"

#include <QList>
#include <QRect>
#include <QString>

#include <optional>

namespace nimbarrow {

/// An output as the compositor has it, on a connection of our own: Qt keeps the size in pixels to itself, and
/// an X server inside a compositor has names of its own for the outputs.
struct WaylandOutput {
    QString name;
    /// On the desktop, in points.
    QRect place;
    /// In pixels, as it is turned.
    QSize mode;
};

/// Waits for two answers of the compositor; empty where there is none.
[[nodiscard]] QList<WaylandOutput> waylandOutputs();

/// The output that shows a screen: the one of the same name, else of the same place, or else the only one.
/// None where it cannot be told.
[[nodiscard]] std::optional<WaylandOutput> outputOf(
    const QList<WaylandOutput>& outputs, const QString& name, const QRect& place);

/// As the compositor has it. Asks anew whenever the screens have changed.
[[nodiscard]] ScreenModeOf waylandScreenMode();

} // namespace nimbarrow

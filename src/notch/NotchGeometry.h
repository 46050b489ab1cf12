#pragma once

#include "platform/ScreenGeometry.h"
#include "platform/Screens.h"

#include <QList>
#include <QSizeF>

#include <optional>

namespace nimbarrow {

/// Where the notch is.
struct NotchGeometry {
    /// The whole frame of the screen that has the notch.
    ScreenRect screenFrame;
    ScreenRect notchRect;

    /// The first screen with a notch, in the given order; none where no screen has one.
    [[nodiscard]] static std::optional<NotchGeometry> find(const QList<Screen>& screens);

    /// A frame of this size that hangs from the top edge of the screen, centred on the notch.
    [[nodiscard]] ScreenRect hangingFrame(double width, double height) const;

    /// How much larger the notch is than any that the surface is drawn for, in whole points: one on a screen
    /// that is not scaled up as much as it should be. The surface is larger by that.
    [[nodiscard]] QSizeF surplus() const;

    friend bool operator==(const NotchGeometry&, const NotchGeometry&) = default;
};

} // namespace nimbarrow

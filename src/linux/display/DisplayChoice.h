#pragma once

#include <QString>

#include <functional>

namespace nimbarrow {

enum class DisplaySystem {
    /// A compositor that places surfaces of its own layer above all windows.
    Wayland,
    /// An X server inside a compositor.
    XWayland,
    X11,
};

/// What there is to be shown on, found out before the application object is made.
struct DisplayFacts {
    /// As QT_QPA_PLATFORM has it: platforms with their arguments, the preferred one first; empty for any.
    QString requested;
    /// As the environment names them; empty where it does not.
    QString waylandDisplay;
    QString x11Display;
    bool waylandAnswers = false;
    bool waylandHasLayerShell = false;
    /// Asked where it matters alone: a compositor may start an X server for whoever knocks.
    std::function<bool()> x11Answers;
};

struct DisplayChoice {
    DisplaySystem system = DisplaySystem::X11;
    /// For QT_QPA_PLATFORM.
    QString platform;
    /// Why the program cannot run here, as a sentence for the terminal; empty where it can.
    QString obstacle;

    friend bool operator==(const DisplayChoice&, const DisplayChoice&) = default;
};

/// The windowing system to use: Wayland where the panel can stand above everything there, else X11. A
/// platform that was asked for is used where it can work, and refused where it cannot.
[[nodiscard]] DisplayChoice chooseDisplay(const DisplayFacts& facts);

} // namespace nimbarrow

#pragma once

#include <QProcessEnvironment>

#include <sys/types.h>

namespace nimbarrow {

/// What this program was started with, before it changed any of it for itself: what the programs that it
/// starts are to find.
struct InheritedState {
    QProcessEnvironment environment;
    mode_t umask = 022;

    /// To be called while there is one thread.
    [[nodiscard]] static InheritedState now();
};

} // namespace nimbarrow

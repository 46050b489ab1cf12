#pragma once

#include <QProcessEnvironment>

#include <sys/resource.h>
#include <sys/types.h>

namespace nimbarrow {

/// What this program was started with, before it changed any of it for itself: what the programs that it
/// starts are to find.
struct InheritedState {
    QProcessEnvironment environment;
    mode_t umask = 022;
    /// How large the memory image of a program that crashed may be, in bytes.
    rlim_t coreSize = RLIM_INFINITY;

    /// To be called while there is one thread.
    [[nodiscard]] static InheritedState now();
};

} // namespace nimbarrow

#pragma once

#include <QtGlobal>

#include <chrono>
#include <cstddef>

namespace nimbarrow {

using PasteboardInstant = std::chrono::steady_clock::time_point;

/// How much of another program's content is read, and how long that may take.
struct PasteboardLimits {
    qsizetype textBytes = qsizetype(4) << 20;
    qsizetype imageBytes = qsizetype(128) << 20;
    std::chrono::milliseconds stall { 5'000 };
    std::chrono::milliseconds whole { 30'000 };
    /// How long what was copied meanwhile waits, so that the order stays.
    std::chrono::milliseconds order { 500 };
};

/// No program offers thousands of forms; who does wants to keep others busy.
inline constexpr qsizetype mostTargets = 2048;

/// Owners that freeze one after the other hold no more than this many unfinished readings.
inline constexpr std::size_t mostReadings = 4;

/// Nobody who pastes takes this long over a piece; a frozen program holds memory no longer.
inline constexpr std::chrono::seconds deliveryStall { 20 };
inline constexpr std::size_t mostDeliveries = 32;

} // namespace nimbarrow

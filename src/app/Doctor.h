#pragma once

#include <QString>

namespace nimbarrow {

struct Platform;

/// What of the program works in this session, as a table for a terminal.
namespace doctor {

[[nodiscard]] QString report(const Platform& platform);

/// The same for a platform that has just been made: the main loop turns for up to 3 s, until all that was
/// asked has been answered.
[[nodiscard]] QString awaitReport(const Platform& platform);

/// Where the program cannot run at all, for this reason.
[[nodiscard]] QString report(const QString& obstacle);

} // namespace doctor

} // namespace nimbarrow

#pragma once

#include <QString>

namespace nimbarrow {

/// The path of a file of the program that nobody starts by name: beside the program where it was built, in
/// the program's own folder of the system's libraries where it was installed.
[[nodiscard]] QString installedFile(const QString& name);

} // namespace nimbarrow

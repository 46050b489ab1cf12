#pragma once

#include <QString>

namespace nimbarrow {

/// The shortest decimal text that reads back as the same number, always with a fractional part: "42.0".
[[nodiscard]] QString shortestDecimal(double finite);

/// A volume as players are told it: a whole number from 0 to 100.
[[nodiscard]] QString wholeVolume(double volume);

} // namespace nimbarrow

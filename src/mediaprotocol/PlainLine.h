#pragma once

#include <QString>

namespace nimbarrow {

/// A stranger's text as one short line that shows what it says: nothing in it breaks the line, turns the
/// direction of what stands beside it, is half a character or stacks marks over other lines. Empty when there
/// is nothing in it to see. At most 500 UTF-16 units; what is longer is cut.
[[nodiscard]] QString plainLine(QStringView text);

} // namespace nimbarrow

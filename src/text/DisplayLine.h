#pragma once

#include <QString>

namespace nimbarrow {

/// A text from outside as one line to show: at most `longest` UTF-16 units that stay within their line and
/// leave what stands beside them as it is. Empty where nothing of it could be seen. Any thread; costs by
/// `longest`, however long the text is.
[[nodiscard]] QString displayLine(QStringView text, qsizetype longest);

} // namespace nimbarrow

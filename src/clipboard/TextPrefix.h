#pragma once

#include <QString>

namespace nimbarrow {

/// The most that is kept of any text, in UTF-16 units: a character may be a letter with a million marks on
/// it.
inline constexpr qsizetype maxStoredLength = qsizetype { 1024 } * 1024;

/// The first `count` characters as people see them. Looks no further into the text than it has to.
[[nodiscard]] QString firstCharacters(const QString& text, qsizetype count);

} // namespace nimbarrow

#pragma once

#include "platform/Scripting.h"

/// What the scripting service answers with, in the program's words.
namespace nimbarrow::scriptanswer {

/// What a descriptor holds, by its four-character type.
enum class Kind { List, Text, Integer, Real, Truth, Nothing, Bytes };

[[nodiscard]] Kind kindOf(quint32 descriptorType);

/// The service's own number and words; none where it gave none.
[[nodiscard]] ScriptResult::Error error(std::optional<qint64> number, const QString& words);

} // namespace nimbarrow::scriptanswer

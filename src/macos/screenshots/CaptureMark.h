#pragma once

#include <QByteArray>

#include <optional>

namespace nimbarrow::capturemark {

/// The extended attribute by which the screenshot tool marks its files.
inline constexpr auto* attribute = "com.apple.metadata:kMDItemIsScreenCapture";

/// Longer than any such mark, in bytes.
inline constexpr qsizetype longest = 256;

/// The truth value that a binary property list holds; none for anything else.
[[nodiscard]] std::optional<bool> valueOf(const QByteArray& propertyList);

} // namespace nimbarrow::capturemark

#pragma once

#include <QString>

#include <optional>

/// The texts that a PNG file carries beside its picture. Any thread.
namespace nimbarrow::pngtext {

/// The program that made the picture, as the file says it before the picture begins. None for what is no PNG
/// file, says nothing, or hides it behind more than a file of a picture needs. Reads a few kilobytes at most
/// and never waits for what is no regular file.
[[nodiscard]] std::optional<QString> software(const QString& path);

} // namespace nimbarrow::pngtext

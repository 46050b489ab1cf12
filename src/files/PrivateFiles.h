#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// Files that only their owner may read, whatever mode they had. Any thread.
namespace nimbarrow::privatefiles {

/// With the folders above it; those that exist above it stay as they are.
void makeFolder(const QString& path);

/// The content of a regular file of at most `maxSize` bytes. Never waits for what is no regular file.
[[nodiscard]] std::optional<QByteArray> read(const QString& path, qsizetype maxSize);

/// All or nothing: after a failure, or the end of the program at any moment, the old file is still whole.
/// `errno` tells why it failed.
[[nodiscard]] bool write(const QString& path, const QByteArray& data);

/// Takes the files of a folder away from everybody else, and removes what an interrupted `write` left there.
void tidyFolder(const QString& path);

} // namespace nimbarrow::privatefiles

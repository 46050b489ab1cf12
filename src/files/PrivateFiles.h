#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// Files that only their owner may read, whatever mode they had. Any thread.
namespace nimbarrow::privatefiles {

/// With the folders above it; those that exist above it stay as they are. False when there is no such folder
/// then, or when it is somebody else's, to which a link may lead: that one stays as it is.
bool makeFolder(const QString& path);

/// The content of a regular file of at most `maxSize` bytes. Never waits for what is no regular file.
[[nodiscard]] std::optional<QByteArray> read(const QString& path, qsizetype maxSize);

/// All or nothing: after a failure, or the end of the program at any moment, the old file is still whole;
/// after a success the new one outlives a loss of power. `errno` tells why it failed. Only into a folder of
/// one's own. What stands at `path` is replaced itself, also a link; what its owner has made read-only stays.
[[nodiscard]] bool write(const QString& path, const QByteArray& data);

/// True when there is no such file then. A folder of somebody else keeps its files.
[[nodiscard]] bool remove(const QString& path);

/// Takes the files of a folder away from everybody else, and removes what an interrupted `write` left there.
/// False when the folder is somebody else's, or is none.
bool tidyFolder(const QString& path);

} // namespace nimbarrow::privatefiles

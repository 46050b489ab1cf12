#pragma once

#include "clipboard/ClipboardItem.h"

#include <QByteArray>
#include <QList>

#include <optional>

/// The history as one JSON file: plain functions of plain values.
namespace nimbarrow::clipboardindex {

/// In bytes: what is longer is not read.
inline constexpr qsizetype maxSize = qsizetype { 256 } * 1024 * 1024;

/// In bytes: what the entry takes in the index, or a little more.
[[nodiscard]] qsizetype encodedSize(const ClipboardItem& item);

[[nodiscard]] QByteArray encode(const QList<ClipboardItem>& items);

/// None when any element is unreadable: the index is read whole or not at all.
[[nodiscard]] std::optional<QList<ClipboardItem>> decode(const QByteArray& json);

} // namespace nimbarrow::clipboardindex

#pragma once

#include "platform/SharePicker.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QUuid>

#include <optional>

namespace nimbarrow {

/// One entry of the history: a text, a link, an image or a set of files that the user copied, or a
/// screenshot.
struct ClipboardItem {
    enum class Kind { Text, Link, Image, Files };

    /// Stays the same for as long as the entry lives, also when it moves to the top.
    QUuid id;
    Kind kind = Kind::Text;
    /// When it was last captured, in UTC.
    QDateTime createdAt;
    /// Of texts and links.
    std::optional<QString> text;
    /// Absolute path of an image entry's file: in the history's own folder, or where it lay when it was
    /// copied.
    std::optional<QString> imagePath;
    /// The files of a files entry as `storedFile()` has them, in the order of the pasteboard.
    std::optional<QStringList> filePaths;
    bool isScreenshot = false;
    /// Whom it was copied from, in words for the user.
    std::optional<QString> sourceApp;
    /// Two entries with the same hash are the same content.
    std::optional<QString> contentHash;
    /// Pinned entries sort first and are never dropped or cleared.
    bool pinned = false;

    /// Name of the drawing that stands for the entry.
    [[nodiscard]] QString symbol() const;
    /// In the current interface language.
    [[nodiscard]] QString kindLabel() const;
    /// The entry in one line; for files in the current interface language.
    [[nodiscard]] std::optional<QString> summary() const;
    [[nodiscard]] QList<QUrl> fileUrls() const;
    [[nodiscard]] std::optional<QUrl> linkUrl() const;
    /// What a drag of the entry carries, and what a double click opens: an image, else a file, else a link.
    [[nodiscard]] std::optional<QUrl> dragUrl() const;
    /// What is given to whoever it is shared with; nothing when the entry holds nothing.
    [[nodiscard]] QList<ShareItem> shareItems() const;

    friend bool operator==(const ClipboardItem&, const ClipboardItem&) = default;
};

/// How an entry keeps a file: its absolute path without a slash behind it, or its address where the bytes of
/// its name are no text.
[[nodiscard]] QString storedFile(const QUrl& file);

/// "text", "link", "image" or "files", as the index keeps it.
[[nodiscard]] QString rawValue(ClipboardItem::Kind kind);

} // namespace nimbarrow

Q_DECLARE_TYPEINFO(nimbarrow::ClipboardItem, Q_RELOCATABLE_TYPE);

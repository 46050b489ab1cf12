#pragma once

#include <QByteArray>
#include <QString>

namespace nimbarrow {

/// A picture file as a player provides it.
struct Artwork {
    /// No picture is larger, in bytes.
    static constexpr qsizetype largest = 8 * 1024 * 1024;

    /// The same for the same contents, whatever the address; empty when there is no picture.
    QString id;
    QByteArray file;
};

[[nodiscard]] Artwork artworkOf(const QByteArray& file);

/// The contents of a data address; empty when it has none or is too large.
[[nodiscard]] QByteArray dataUrlContents(const QString& url);

} // namespace nimbarrow

#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

#include <optional>

class QIODevice;

/// Image bytes to PNG and to thumbnails. Any thread.
namespace nimbarrow::imagecodec {

/// Bytes: what is read of a file that is to be a picture.
inline constexpr qsizetype maxFileSize = qsizetype { 256 } * 1024 * 1024;

/// PNG bytes come back as they are, other images are encoded anew; none for what is no image or claims more
/// pixels than the program is ready to hold.
[[nodiscard]] std::optional<QByteArray> pngData(const QByteArray& data);

/// The first image, upright, at most `maxPixel` pixels on its longest side and never enlarged; null when
/// there is none.
[[nodiscard]] QImage thumbnail(QIODevice& source, int maxPixel);
[[nodiscard]] QImage thumbnail(QByteArray data, int maxPixel);

} // namespace nimbarrow::imagecodec

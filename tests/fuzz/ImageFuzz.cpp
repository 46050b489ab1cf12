#include "Fuzz.h"
#include "clipboard/ImageCodec.h"

#include <QBuffer>
#include <QImageReader>

#include <algorithm>
#include <tuple>

using namespace nimbarrow;

namespace {

constexpr int maxPixel = 48;

QImage thumbnailOf(QByteArray data)
{
    QBuffer source(&data);
    source.open(QIODevice::ReadOnly);
    auto image = imagecodec::thumbnail(source, maxPixel);
    fuzz::require(image.width() <= maxPixel && image.height() <= maxPixel, "a thumbnail is small");
    fuzz::require(image.isNull() || image.format() == QImage::Format_RGB32
            || image.format() == QImage::Format_ARGB32_Premultiplied,
        "a thumbnail can be drawn as it is");
    return image;
}

QSize sizeOf(QByteArray data)
{
    QBuffer source(&data);
    source.open(QIODevice::ReadOnly);
    return QImageReader(&source).size();
}

} // namespace

/// A picture from another program, a screenshot, a player's artwork.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    // The codec sets a bound of its own, once, and what it allows would take half a second each time.
    std::ignore = thumbnailOf({});
    QImageReader::setAllocationLimit(16);

    const auto thumbnail = thumbnailOf(bytes);
    const auto png = imagecodec::pngData(bytes);
    if (!png)
        return 0;
    fuzz::require(png->startsWith("\x89PNG"), "the result is PNG");
    fuzz::require(imagecodec::pngData(*png) == png, "PNG stays as it is");
    if (*png == bytes)
        return 0;
    const auto image = QImage::fromData(*png, "png");
    fuzz::require(!image.isNull(), "what was encoded can be decoded");
    const auto again = thumbnailOf(*png);
    fuzz::require(!again.isNull(), "what was encoded has a thumbnail");
    fuzz::require(std::max(again.width(), again.height())
            == std::min(maxPixel, std::max(image.width(), image.height())),
        "a thumbnail is as large as it may be, and never enlarged");
    // A frame of a GIF may be larger than the whole; what is right then nobody knows.
    const auto claimed = sizeOf(bytes);
    if (!thumbnail.isNull() && (claimed == image.size() || claimed == image.size().transposed()))
        fuzz::require(thumbnail.size() == again.size(), "both ways the same shape");
    return 0;
}

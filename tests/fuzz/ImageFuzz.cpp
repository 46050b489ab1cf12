#include "Fuzz.h"
#include "images/ImageCodec.h"

#include <QBuffer>
#include <QImageReader>
#include <QtEndian>

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

quint32 checksum(QByteArrayView bytes)
{
    auto sum = ~0U;
    for (const auto byte : bytes) {
        sum ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum >> 1) ^ ((sum & 1) != 0 ? 0xedb88320U : 0U);
    }
    return ~sum;
}

/// Nearly every change spoils the checksum of a PNG's chunk, and behind that nothing would ever be read.
QByteArray withChecksums(QByteArray png)
{
    for (qsizetype at = 8; png.startsWith("\x89PNG\r\n") && at + 12 <= png.size();) {
        const auto length = qFromBigEndian<quint32>(png.constData() + at);
        if (at + 12 + qsizetype(length) > png.size())
            break;
        const auto end = at + 8 + qsizetype(length);
        qToBigEndian(checksum(QByteArrayView(png).sliced(at + 4, 4 + length)), png.data() + end);
        at = end + 4;
    }
    return png;
}

} // namespace

/// A picture from another program, a screenshot, a player's artwork.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto bytes
        = withChecksums(QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
    // The codec sets a bound of its own, once, and what it allows would take half a second each time.
    std::ignore = thumbnailOf({});
    QImageReader::setAllocationLimit(4);

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

#include "images/ImageCodec.h"

#include <QBuffer>
#include <QImageReader>
#include <QImageWriter>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <mutex>

using namespace Qt::StringLiterals;

namespace nimbarrow::imagecodec {

namespace {

/// A file of a few bytes can claim any size, and the size is what memory is taken for.
constexpr qint64 maxPixels = 100'000'000;
/// In megabytes. What its format cannot make smaller while it is read must not be larger; 67 million pixels.
constexpr int maxWhole = 256;
/// In bytes of what a format keeps beside the picture.
constexpr qint64 maxKept = 300'000'000;
/// From here on pictures are decoded one after the other.
constexpr qint64 largePixels = 4'000'000;

bool isTooLarge(qint64 width, qint64 height)
{
    return height > 0 && width > maxPixels / height;
}

// A PNG begins with its signature and the header chunk: length, name, width, height.
bool isTooLargePng(const QByteArray& png)
{
    constexpr qsizetype widthAt = 16;
    constexpr qsizetype heightAt = 20;
    return png.size() >= heightAt + 4 && QByteArrayView(png).sliced(12, 4) == "IHDR"
        && isTooLarge(qFromBigEndian<quint32>(png.constData() + widthAt),
            qFromBigEndian<quint32>(png.constData() + heightAt));
}

/// How a kind of picture file begins, after some bytes that may be anything.
struct Signature {
    qsizetype at;
    QByteArrayView bytes;
    const char* format;
};
constexpr std::array signatures {
    Signature { 0, "\x89PNG\r\n\x1a\n", "png" },
    Signature { 0, "\xff\xd8\xff", "jpeg" },
    Signature { 0, "GIF8", "gif" },
    Signature { 0, { "II*\0", 4 }, "tiff" },
    Signature { 0, { "MM\0*", 4 }, "tiff" },
    Signature { 8, "WEBP", "webp" },
    Signature { 0, "BM", "bmp" },
    Signature { 4, "ftyphe", "heic" },
    Signature { 4, "ftypmif1", "heif" },
};

// Left to choose, Qt loads the libraries of every kind to ask each of them. Some take almost any bytes for a
// picture, and one follows references to other files.
QByteArray formatOf(QIODevice& source)
{
    constexpr auto longestBeginning = 12;
    const auto beginning = source.peek(longestBeginning);
    const auto* const found = std::ranges::find_if(signatures, [&beginning](const Signature& signature) {
        return QByteArrayView(beginning)
            .sliced(std::min(signature.at, beginning.size()))
            .startsWith(signature.bytes);
    });
    return found == signatures.end() ? QByteArray() : QByteArray(found->format);
}

// The PNG library takes and fills as much memory as a chunk says it has before it looks for it.
bool claimsMoreThanItHas(QIODevice& png)
{
    constexpr qint64 signature = 8;
    constexpr qint64 head = 8;
    constexpr qint64 checksum = 4;
    const auto start = png.pos();
    auto claims = false;
    for (auto at = start + signature; !claims && at + head <= png.size() && png.seek(at);) {
        const auto chunk = png.read(head);
        if (chunk.size() != head || chunk.endsWith("IEND"))
            break;
        at += head + qFromBigEndian<quint32>(chunk.constData()) + checksum;
        claims = at > png.size();
    }
    png.seek(start);
    return claims;
}

// A JPEG that comes in several scans is kept whole while it is read, in twice the bytes of its samples,
// however small it is made; only the frame's header tells.
bool keepsTooMuch(QIODevice& jpeg)
{
    const auto start = jpeg.pos();
    qint64 kept = 0;
    int components = 0;
    bool inScans = false;
    for (auto at = start + 2; at + 4 <= jpeg.size() && jpeg.seek(at);) {
        const auto head = jpeg.read(4);
        if (head.size() != 4 || head[0] != '\xff')
            break;
        const auto marker = static_cast<quint8>(head[1]);
        const auto length = qFromBigEndian<quint16>(head.constData() + 2);
        const auto segment = jpeg.peek(6 + 4 * 3);
        if (marker == 0xda) {
            inScans = inScans || (!segment.isEmpty() && segment[0] < components);
            break;
        }
        if (marker >= 0xc0 && marker <= 0xcf && marker != 0xc4 && marker != 0xc8 && marker != 0xcc
            && segment.size() == 6 + 4 * 3) {
            inScans = marker == 0xc2;
            components = std::min<int>(static_cast<quint8>(segment[5]), 4);
            int samples = 0;
            int across = 1;
            int down = 1;
            for (int component = 0; component < components; ++component) {
                const auto factors = static_cast<quint8>(segment[7 + 3 * component]);
                samples += (factors >> 4) * (factors & 15);
                across = std::max(across, factors >> 4);
                down = std::max(down, factors & 15);
            }
            kept = qint64 { 2 } * qFromBigEndian<quint16>(segment.constData() + 1)
                * qFromBigEndian<quint16>(segment.constData() + 3) * samples / (across * down);
        }
        at += 2 + length;
    }
    jpeg.seek(start);
    return inScans && kept > maxKept;
}

/// True when the reader may be asked for the image.
bool prepare(QImageReader& reader)
{
    const auto format = formatOf(*reader.device());
    auto& source = *reader.device();
    if (format.isEmpty() || (format == "png" && claimsMoreThanItHas(source))
        || (format == "jpeg" && keepsTooMuch(source)))
        return false;
    reader.setAutoDetectImageFormat(false);
    reader.setFormat(format);
    // Also holds for readers that tell no size beforehand.
    static const auto limited = [] {
        QImageReader::setAllocationLimit(maxWhole);
        return true;
    }();
    const auto size = reader.size();
    reader.setAutoTransform(true);
    return limited && !isTooLarge(size.width(), size.height());
}

QSize fitted(QSize size, int maxPixel)
{
    const auto longest = std::max(size.width(), size.height());
    if (longest <= maxPixel)
        return size;
    const auto factor = static_cast<double>(maxPixel) / longest;
    return QSize(qRound(size.width() * factor), qRound(size.height() * factor)).expandedTo({ 1, 1 });
}

/// Held while a large picture is decoded: several at once would need several times the memory.
std::unique_lock<std::mutex> turnFor(const QImageReader& reader)
{
    static std::mutex one;
    const auto size = reader.size();
    const auto pixels = qint64 { size.width() } * size.height();
    // Who tells no size may have any.
    return size.isValid() && pixels < largePixels ? std::unique_lock(one, std::defer_lock)
                                                  : std::unique_lock(one);
}

} // namespace

std::optional<QByteArray> pngData(const QByteArray& data)
{
    if (data.startsWith("\x89PNG"_ba))
        return isTooLargePng(data) ? std::nullopt : std::optional(data);
    QBuffer source;
    source.setData(data);
    source.open(QIODevice::ReadOnly);
    QImageReader reader(&source);
    QImage image;
    if (!prepare(reader))
        return std::nullopt;
    const auto turn = turnFor(reader);
    if (!reader.read(&image))
        return std::nullopt;
    QByteArray png;
    QBuffer target(&png);
    target.open(QIODevice::WriteOnly);
    return QImageWriter(&target, "png"_ba).write(image) ? std::optional(png) : std::nullopt;
}

QImage thumbnail(QIODevice& source, int maxPixel)
{
    QImageReader reader(&source);
    if (maxPixel <= 0 || !prepare(reader))
        return {};
    const auto turn = turnFor(reader);
    // The limit is a square, so a picture that lies on its side until it is turned fits it as well.
    if (const auto size = reader.size(); size.isValid())
        reader.setScaledSize(fitted(size, maxPixel));
    auto image = reader.read();
    if (image.isNull())
        return {};
    // Before it is scaled, where a large one is changed in its place, or scaling would make a copy for
    // itself.
    image = std::move(image).convertToFormat(
        image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    if (const auto size = fitted(image.size(), maxPixel); size != image.size())
        image = image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return image;
}

QImage thumbnail(QByteArray data, int maxPixel)
{
    QBuffer source(&data);
    source.open(QIODevice::ReadOnly);
    return thumbnail(source, maxPixel);
}

} // namespace nimbarrow::imagecodec

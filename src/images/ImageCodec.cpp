#include "images/ImageCodec.h"

#include "images/TiffStrips.h"

#include <QBuffer>
#include <QImageReader>
#include <QImageWriter>
#include <QtEndian>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace nimbarrow::imagecodec {

namespace {

/// A file of a few bytes can claim any size, and the size is what memory is taken for.
constexpr qint64 maxPixels = 100'000'000;
constexpr qint64 bytesPerPixel = 4;

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

/// True when the reader may be asked for the image.
bool prepare(QImageReader& reader)
{
    const auto format = formatOf(*reader.device());
    if (format.isEmpty() || (format == "png" && claimsMoreThanItHas(*reader.device())))
        return false;
    reader.setAutoDetectImageFormat(false);
    reader.setFormat(format);
    // Qt's own bound is lower than ours, and also holds for readers that tell no size beforehand.
    static const auto raised = [] {
        QImageReader::setAllocationLimit(static_cast<int>(maxPixels * bytesPerPixel / 1'000'000));
        return true;
    }();
    const auto size = reader.size();
    reader.setAutoTransform(true);
    return raised && !isTooLarge(size.width(), size.height());
}

QSize fitted(QSize size, int maxPixel)
{
    const auto longest = std::max(size.width(), size.height());
    if (longest <= maxPixel)
        return size;
    const auto factor = static_cast<double>(maxPixel) / longest;
    return QSize(qRound(size.width() * factor), qRound(size.height() * factor)).expandedTo({ 1, 1 });
}

// Qt has no reader that makes a TIFF smaller while it reads it. Null when this is none, or none of the usual
// kind.
QImage smallTiff(const QImageReader& reader, int maxPixel)
{
    const auto size = reader.size();
    const auto factor = std::max(size.width(), size.height()) / maxPixel;
    if (factor < 2 || !reader.format().startsWith("tif"))
        return {};
    const auto image = tiffstrips::reduced(*reader.device(), size, factor);
    return image.isNull()
        ? image
        : image.scaled(fitted(size, maxPixel), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
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
    if (!prepare(reader) || !reader.read(&image))
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
    auto image = smallTiff(reader, maxPixel);
    if (image.isNull()) {
        // The limit is a square, so a picture that lies on its side until it is turned fits it as well.
        if (const auto size = reader.size(); size.isValid())
            reader.setScaledSize(fitted(size, maxPixel));
        image = reader.read();
        if (const auto size = fitted(image.size(), maxPixel); size != image.size())
            image = image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    if (image.isNull())
        return {};
    return std::move(image).convertToFormat(
        image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
}

} // namespace nimbarrow::imagecodec

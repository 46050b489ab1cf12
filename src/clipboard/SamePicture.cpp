#include "clipboard/SamePicture.h"

#include "files/PrivateFiles.h"
#include "images/ImageCodec.h"

#include <QImage>

#include <cstdlib>
#include <limits>

namespace nimbarrow {

namespace {

/// Of a colour's 256 steps, on average over the picture: what saving as a photograph changes.
constexpr qint64 maxLoss = 4;

bool isPng(const QByteArray& data)
{
    return data.startsWith("\x89PNG");
}

bool isLossy(const QByteArray& data)
{
    return !isPng(data) && !data.startsWith("BM");
}

/// Width and height of a PNG, which stand in its head.
QByteArrayView sizeInHead(const QByteArray& png)
{
    constexpr qsizetype sizeAt = 16;
    constexpr qsizetype length = 8;
    return png.size() < sizeAt + length ? QByteArrayView() : QByteArrayView(png).sliced(sizeAt, length);
}

QImage decode(const QByteArray& data)
{
    return imagecodec::thumbnail(data, std::numeric_limits<int>::max())
        .convertToFormat(QImage::Format_ARGB32);
}

bool isNearlySame(const QImage& one, const QImage& other)
{
    qint64 difference = 0;
    for (auto y = 0; y < one.height(); ++y) {
        const auto* const line = one.constScanLine(y);
        const auto* const otherLine = other.constScanLine(y);
        for (qsizetype at = 0; at < qsizetype { 4 } * one.width(); ++at)
            difference += std::abs(line[at] - otherLine[at]);
    }
    return difference <= maxLoss * 4 * one.width() * one.height();
}

bool samePicture(const QByteArray& data, const QByteArray& otherData)
{
    if (data.isEmpty() || otherData.isEmpty())
        return false;
    if (data == otherData)
        return true;
    // Most pictures that were not made together have another size, and decoding takes its time.
    if (isPng(data) && isPng(otherData) && sizeInHead(data) != sizeInHead(otherData))
        return false;
    const auto one = decode(data);
    const auto other = one.isNull() ? QImage() : decode(otherData);
    if (other.isNull() || one.size() != other.size())
        return false;
    return isLossy(data) || isLossy(otherData) ? isNearlySame(one, other) : one == other;
}

} // namespace

bool samePicture(const QString& path, const QString& otherPath)
{
    return samePicture(privatefiles::read(path, imagecodec::maxFileSize).value_or(QByteArray()), otherPath);
}

bool samePicture(const QByteArray& data, const QString& otherPath)
{
    return samePicture(data, privatefiles::read(otherPath, imagecodec::maxFileSize).value_or(QByteArray()));
}

} // namespace nimbarrow

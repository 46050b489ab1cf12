#include "nowplaying/Artwork.h"

#include "images/ImageCodec.h"

#include <QBuffer>

namespace nimbarrow {
namespace {

constexpr auto maxPixel = 600;

} // namespace

QImage artworkFromData(QByteArray data)
{
    QBuffer source(&data);
    source.open(QIODevice::ReadOnly);
    return imagecodec::thumbnail(source, maxPixel);
}

} // namespace nimbarrow

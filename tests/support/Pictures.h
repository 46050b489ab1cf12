#pragma once

#include <QBuffer>
#include <QImage>

namespace nimbarrow {

/// A picture of one colour, as a file has it.
inline QByteArray encodedPicture(QSize size, const char* format = "png", const QColor& color = Qt::red)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    QBuffer buffer;
    image.save(&buffer, format);
    return buffer.data();
}

} // namespace nimbarrow

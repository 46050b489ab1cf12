// IconFile PICTURE.svg ICON.icns: draws the icon in every size that the system asks for, into one file.
#include <QBuffer>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QtEndian>

#include <array>

namespace {

struct Size {
    const char* name;
    int pixels;
};

// The second four stand for half as many points on screens with twice the pixels.
constexpr std::array sizes { Size { "ic07", 128 }, Size { "ic08", 256 }, Size { "ic09", 512 },
    Size { "ic10", 1024 }, Size { "ic11", 32 }, Size { "ic12", 64 }, Size { "ic13", 256 },
    Size { "ic14", 512 } };

QByteArray entry(const char* name, const QByteArray& content)
{
    constexpr qsizetype header = 8;
    const auto size = qToBigEndian(static_cast<quint32>(content.size() + header));
    return QByteArray(name) + QByteArray(reinterpret_cast<const char*>(&size), sizeof size) + content;
}

QByteArray drawn(QSvgRenderer& picture, int pixels)
{
    QImage image(pixels, pixels, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    picture.render(&painter);
    painter.end();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

} // namespace

int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const auto arguments = QGuiApplication::arguments();
    if (arguments.size() != 3)
        return 2;
    QSvgRenderer picture(arguments.at(1));
    if (!picture.isValid())
        return 1;
    QByteArray all;
    for (const auto& size : sizes)
        all += entry(size.name, drawn(picture, size.pixels));
    QFile file(arguments.at(2));
    const auto icon = entry("icns", all);
    return file.open(QFile::WriteOnly) && file.write(icon) == icon.size() ? 0 : 1;
}

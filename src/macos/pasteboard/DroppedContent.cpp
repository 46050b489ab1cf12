#include "macos/pasteboard/DroppedContent.h"

#include "macos/pasteboard/TypeNames.h"

#include <QBuffer>
#include <QImage>
#include <QMimeData>

#include <array>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

struct Format {
    QLatin1StringView mime;
    QStringView identifier;
};

constexpr auto png = "image/png"_L1;

// Qt makes one list of files and links, and decodes pictures by itself.
constexpr std::array known {
    Format { "text/uri-list"_L1, pasteboardtype::fileUrl },
    Format { png, pasteboardtype::png },
    Format { "application/x-qt-image"_L1, pasteboardtype::png },
    Format { "text/plain"_L1, pasteboardtype::string },
};

QByteArray pngOf(const QImage& image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    return image.save(&buffer, "PNG") ? bytes : QByteArray();
}

} // namespace

QStringList DroppedContent::typesOf(const QMimeData& mime)
{
    const auto formats = mime.formats();
    QStringList names;
    for (const auto& format : formats) {
        const auto* const entry = std::ranges::find(known, format, &Format::mime);
        names << (entry == known.end() ? format : entry->identifier.toString());
    }
    return typenames::identifiersOf(names);
}

DroppedContent::DroppedContent(const QMimeData& mime)
    : m_types(typesOf(mime))
{
    // As on the pasteboard, a marked content is nobody's to read.
    if (typenames::isMarked(m_types))
        return;
    m_urls = mime.urls();
    if (mime.hasText())
        m_string = mime.text();
    m_png = mime.data(png);
    if (m_png.isEmpty() && mime.hasImage())
        m_png = pngOf(qvariant_cast<QImage>(mime.imageData()));
}

QByteArray DroppedContent::data(QStringView type) const
{
    if (type == pasteboardtype::png)
        return m_png;
    return type == pasteboardtype::string ? m_string.value_or(QString()).toUtf8() : QByteArray();
}

} // namespace nimbarrow

#include "linux/media/Artwork.h"

#include <QCryptographicHash>

using namespace Qt::StringLiterals;

namespace nimbarrow {

Artwork artworkOf(const QByteArray& file)
{
    if (file.isEmpty() || file.size() > Artwork::largest)
        return {};
    const auto hash = QCryptographicHash::hash(file, QCryptographicHash::Sha1);
    return { QString::fromLatin1(hash.toHex()), file };
}

QByteArray dataUrlContents(const QString& url)
{
    const auto comma = url.indexOf(u',');
    if (!url.startsWith("data:"_L1, Qt::CaseInsensitive) || comma < 0)
        return {};
    const auto encoded = QByteArray::fromPercentEncoding(url.mid(comma + 1).toUtf8());
    const bool base64 = QStringView(url).first(comma).endsWith(";base64"_L1, Qt::CaseInsensitive);
    auto contents = base64 ? QByteArray::fromBase64(encoded) : encoded;
    return contents.size() > Artwork::largest ? QByteArray() : contents;
}

} // namespace nimbarrow

#include "linux/screenshots/PngText.h"

#include <QFile>
#include <QtEndian>

#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace nimbarrow::pngtext {

namespace {

constexpr QByteArrayView signature("\x89PNG\r\n\x1a\n", 8);
// Pictures begin after a handful of chunks; their texts are short.
constexpr int mostChunks = 64;
constexpr quint32 longestText = 4096;
constexpr quint32 longestChunk = 0x7fff'ffff;

bool openRegular(QFile& file, const QString& path)
{
    const int handle = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (handle < 0)
        return false;
    struct stat entry { };
    if (::fstat(handle, &entry) == 0 && S_ISREG(entry.st_mode)
        && file.open(handle, QFile::ReadOnly | QFile::Unbuffered, QFile::AutoCloseHandle))
        return true;
    ::close(handle);
    return false;
}

/// What stands behind the zero byte that ends the first field; empty where there is none.
QByteArray behindZero(const QByteArray& text)
{
    const auto zero = text.indexOf('\0');
    return zero < 0 ? QByteArray() : text.sliced(zero + 1);
}

std::optional<QString> softwareIn(const QByteArray& type, const QByteArray& content)
{
    if (!content.startsWith("Software\0"_ba))
        return {};
    const auto value = behindZero(content);
    if (type == "tEXt")
        return QString::fromLatin1(value);
    // Whether it is compressed, and how; then the language and the keyword in it.
    if (type != "iTXt" || value.size() < 2 || value.front() != '\0')
        return {};
    return QString::fromUtf8(behindZero(behindZero(value.sliced(2))));
}

} // namespace

std::optional<QString> software(const QString& path)
{
    QFile file;
    if (!openRegular(file, path) || file.read(signature.size()) != signature)
        return {};
    for (int chunk = 0; chunk < mostChunks; ++chunk) {
        const auto head = file.read(8);
        if (head.size() != 8)
            return {};
        const auto length = qFromBigEndian<quint32>(head.constData());
        const auto type = head.sliced(4);
        if (length > longestChunk || type == "IDAT" || type == "IEND")
            return {};
        const auto next = file.pos() + length + 4;
        if ((type == "tEXt" || type == "iTXt") && length <= longestText) {
            const auto content = file.read(length);
            if (content.size() == qsizetype(length)) {
                if (auto found = softwareIn(type, content))
                    return found;
            }
        }
        if (next > file.size() || !file.seek(next))
            return {};
    }
    return {};
}

} // namespace nimbarrow::pngtext

#include "Fuzz.h"
#include "linux/screenshots/PngText.h"

#include <sys/mman.h>
#include <unistd.h>

using namespace nimbarrow;

namespace {

/// A file without a place on the disk.
int memoryFile()
{
    static const int file = ::memfd_create("png", MFD_CLOEXEC);
    return file;
}

} // namespace

/// A picture file in the folder of the screenshots.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto file = memoryFile();
    const QByteArrayView bytes(data, static_cast<qsizetype>(size));
    if (::ftruncate(file, 0) != 0 || ::pwrite(file, data, size, 0) != bytes.size())
        return -1;
    const auto software = pngtext::software(QStringLiteral("/proc/self/fd/%1").arg(file));
    if (!software)
        return 0;
    fuzz::require(bytes.startsWith("\x89PNG\r\n\x1a\n"), "only a PNG file says who made it");
    fuzz::require(software->size() <= 4096, "a name is short");
    const auto name = bytes.indexOf(QByteArrayView("Software\0", 9), 16);
    fuzz::require(name >= 0, "a name stands behind its keyword");
    return 0;
}

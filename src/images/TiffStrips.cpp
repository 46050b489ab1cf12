#include "images/TiffStrips.h"

#include "images/TiffLibrary.h"

#include <QIODevice>

#include <algorithm>
#include <array>
#include <memory>
#include <vector>

namespace nimbarrow::tiffstrips {

namespace {

/// A strip of more pixels is no smaller than what a reader of whole pictures takes.
constexpr qint64 mostStripPixels = qint64 { 2 } * 1024 * 1024;

QIODevice& device(thandle_t handle)
{
    return *static_cast<QIODevice*>(handle);
}

tmsize_t read(thandle_t handle, void* data, tmsize_t size)
{
    return device(handle).read(static_cast<char*>(data), size);
}

tmsize_t writeNothing(thandle_t /*handle*/, void* /*data*/, tmsize_t /*size*/)
{
    return -1;
}

toff_t seek(thandle_t handle, toff_t offset, int whence)
{
    auto& file = device(handle);
    const auto from = whence == SEEK_CUR ? file.pos() : whence == SEEK_END ? file.size() : 0;
    const auto place = from + static_cast<qint64>(offset);
    return file.seek(place) ? static_cast<toff_t>(place) : static_cast<toff_t>(-1);
}

int leaveOpen(thandle_t /*handle*/)
{
    return 0;
}

toff_t size(thandle_t handle)
{
    return static_cast<toff_t>(device(handle).size());
}

// What is wrong with somebody's picture is no word in our log.
int keepSilent(
    TIFF* /*tiff*/, void* /*user*/, const char* /*module*/, const char* /*format*/, va_list /*words*/)
{
    return 1;
}

struct Closing {
    void operator()(TIFF* tiff) const { TiffLibrary::loaded().close(tiff); }
    void operator()(TIFFOpenOptions* options) const { TiffLibrary::loaded().freeOptions(options); }
};

using File = std::unique_ptr<TIFF, Closing>;

File open(QIODevice& source)
{
    if (!TiffLibrary::loaded().isComplete || !source.seek(0))
        return {};
    const std::unique_ptr<TIFFOpenOptions, Closing> options(TiffLibrary::loaded().makeOptions());
    TiffLibrary::loaded().onError(options.get(), keepSilent, nullptr);
    TiffLibrary::loaded().onWarning(options.get(), keepSilent, nullptr);
    return File(TiffLibrary::loaded().open("picture", "rm", &source, read, writeNothing, seek, leaveOpen,
        size, nullptr, nullptr, options.get()));
}

template <typename Number>
Number field(const File& tiff, ttag_t tag)
{
    Number value {};
    return TiffLibrary::loaded().field(tiff.get(), tag, &value) ? value : Number {};
}

bool isOpaque(const File& tiff)
{
    uint16_t count = 0;
    uint16_t* kinds = nullptr;
    return !TiffLibrary::loaded().field(tiff.get(), TIFFTAG_EXTRASAMPLES, &count, &kinds) || count == 0;
}

bool isPlain(const File& tiff)
{
    std::array<char, 1024> reason {};
    return !TiffLibrary::loaded().isTiled(tiff.get()) && isOpaque(tiff)
        && field<uint16_t>(tiff, TIFFTAG_ORIENTATION) == ORIENTATION_TOPLEFT
        && TiffLibrary::loaded().isReadable(tiff.get(), reason.data());
}

/// Averages squares of pixels, row by row. What is left over at the right and at the bottom makes no pixel.
class Squares {
public:
    Squares(QSize size, int factor)
        : m_factor(factor)
        , m_image(size.width() / factor, size.height() / factor, QImage::Format_RGB32)
        , m_sums(static_cast<std::size_t>(m_image.width()))
    {
    }

    void add(const uint32_t* row)
    {
        if (m_line == m_image.height())
            return;
        for (auto& sum : m_sums) {
            for (const auto* const end = row + m_factor; row != end; ++row) {
                sum[0] += TIFFGetR(*row);
                sum[1] += TIFFGetG(*row);
                sum[2] += TIFFGetB(*row);
            }
        }
        if (++m_rows == m_factor)
            finishLine();
    }

    [[nodiscard]] QImage image() const { return m_image; }

private:
    void finishLine()
    {
        const auto pixels = static_cast<uint64_t>(m_factor) * static_cast<uint64_t>(m_factor);
        auto* const line = reinterpret_cast<QRgb*>(m_image.scanLine(m_line++));
        std::ranges::transform(m_sums, line, [pixels](const auto& sum) {
            const auto average
                = [pixels](uint64_t color) { return static_cast<int>((color + pixels / 2) / pixels); };
            return qRgb(average(sum[0]), average(sum[1]), average(sum[2]));
        });
        std::ranges::fill(m_sums, std::array<uint64_t, 3> {});
        m_rows = 0;
    }

    int m_factor;
    int m_rows = 0;
    int m_line = 0;
    QImage m_image;
    std::vector<std::array<uint64_t, 3>> m_sums;
};

} // namespace

QImage reduced(QIODevice& source, QSize size, int factor)
{
    const auto tiff = open(source);
    if (!tiff || !isPlain(tiff))
        return {};
    const auto width = field<uint32_t>(tiff, TIFFTAG_IMAGEWIDTH);
    const auto height = field<uint32_t>(tiff, TIFFTAG_IMAGELENGTH);
    const auto stripRows = std::min(field<uint32_t>(tiff, TIFFTAG_ROWSPERSTRIP), height);
    if (width != static_cast<uint32_t>(size.width()) || height != static_cast<uint32_t>(size.height())
        || stripRows == 0 || qint64 { width } * stripRows > mostStripPixels)
        return {};
    Squares squares(size, factor);
    std::vector<uint32_t> strip(std::size_t { width } * stripRows);
    for (uint32_t top = 0; top < height; top += stripRows) {
        if (!TiffLibrary::loaded().readStrip(tiff.get(), top, strip.data()))
            return {};
        // The lowest row comes first.
        for (auto row = std::min(stripRows, height - top); row > 0; --row)
            squares.add(&strip[std::size_t { width } * (row - 1)]);
    }
    return squares.image();
}

} // namespace nimbarrow::tiffstrips

#pragma once

#include <QImage>

class QIODevice;

/// TIFF pictures strip by strip, so that a large one is never whole in memory. Any thread.
namespace nimbarrow::tiffstrips {

/// The first picture with the average of `factor` x `factor` pixels in place of each. Null for what is no
/// plain opaque picture of this size in small strips, or broken: a reader of whole pictures may still read
/// it.
[[nodiscard]] QImage reduced(QIODevice& source, QSize size, int factor);

} // namespace nimbarrow::tiffstrips

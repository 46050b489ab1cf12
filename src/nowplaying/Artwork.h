#pragma once

#include <QByteArray>
#include <QImage>

namespace nimbarrow {

/// A track's picture in the size that is kept; null for what is no picture. Any thread.
[[nodiscard]] QImage artworkFromData(QByteArray data);

} // namespace nimbarrow

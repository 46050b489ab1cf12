#pragma once

#include <QByteArray>
#include <QString>

namespace nimbarrow {

/// Whether two image files show the same: pixel by pixel, or nearly so where one is of a kind that loses
/// detail. False for what is no image, but for the same bytes. Takes as long as decoding both; any thread.
[[nodiscard]] bool samePicture(const QString& path, const QString& otherPath);
[[nodiscard]] bool samePicture(const QByteArray& data, const QString& otherPath);

} // namespace nimbarrow

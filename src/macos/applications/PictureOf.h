#pragma once

#include <QImage>

#include <AppKit/AppKit.h>

namespace nimbarrow {

/// The image in pixels, at most `longest` of them wide and high; null where there is none.
[[nodiscard]] QImage pictureOf(NSImage* _Nullable image, int longest);

} // namespace nimbarrow

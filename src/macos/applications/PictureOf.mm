#include "macos/applications/PictureOf.h"

#include "macos/session/CfOwner.h"

#include <QSize>

namespace nimbarrow {

namespace {

struct CgRelease {
    void operator()(CGContextRef context) const { CGContextRelease(context); }
    void operator()(CGColorSpaceRef space) const { CGColorSpaceRelease(space); }
};

constexpr size_t bitsOfColor = 8;

} // namespace

QImage pictureOf(NSImage* image, int longest)
{
    // Of the sizes that an icon has, the one that is drawn best in this place.
    auto place = NSMakeRect(0, 0, longest, longest);
    auto* const best = [image CGImageForProposedRect:&place context:nil hints:nil];
    if (!best)
        return {};
    const QSize pixels(static_cast<int>(CGImageGetWidth(best)), static_cast<int>(CGImageGetHeight(best)));
    const auto size = pixels.boundedTo(pixels.scaled(longest, longest, Qt::KeepAspectRatio));
    QImage picture(size, QImage::Format_ARGB32_Premultiplied);
    if (picture.isNull())
        return {};
    picture.fill(Qt::transparent);
    const std::unique_ptr<CGColorSpace, CgRelease> space(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
    const std::unique_ptr<CGContext, CgRelease> context(CGBitmapContextCreate(picture.bits(),
        static_cast<size_t>(size.width()), static_cast<size_t>(size.height()), bitsOfColor,
        static_cast<size_t>(picture.bytesPerLine()), space.get(),
        static_cast<uint32_t>(kCGImageAlphaPremultipliedFirst)
            | static_cast<uint32_t>(kCGBitmapByteOrder32Little)));
    if (!context)
        return {};
    CGContextDrawImage(context.get(), NSMakeRect(0, 0, size.width(), size.height()), best);
    return picture;
}

} // namespace nimbarrow

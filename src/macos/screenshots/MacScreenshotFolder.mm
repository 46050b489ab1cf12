#include "macos/screenshots/MacScreenshotFolder.h"

#include "macos/screenshots/CaptureMark.h"
#include "macos/session/CfOwner.h"

#include <QDir>
#include <QFile>

#include <CoreServices/CoreServices.h>
#include <Foundation/Foundation.h>
#include <array>
#include <sys/xattr.h>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

/// Written into the file itself, so it is there as soon as the file is.
std::optional<bool> markOf(const QString& path)
{
    std::array<char, capturemark::longest> bytes {};
    const auto size = getxattr(
        QFile::encodeName(path).constData(), capturemark::attribute, bytes.data(), bytes.size(), 0, 0);
    if (size <= 0)
        return {};
    return capturemark::valueOf(QByteArray(bytes.data(), static_cast<qsizetype>(size)));
}

/// What the index of the volume knows; on volumes that keep no such attributes it is all there is.
bool isIndexedAsCapture(const QString& path)
{
    auto* const url = [NSURL fileURLWithPath:path.toNSString()];
    const CfOwner<MDItemRef> item(MDItemCreateWithURL(kCFAllocatorDefault, (__bridge CFURLRef)url));
    if (!item)
        return false;
    const CfOwner<CFTypeRef> value(MDItemCopyAttribute(item.get(), CFSTR("kMDItemIsScreenCapture")));
    return value && CFGetTypeID(value.get()) == CFBooleanGetTypeID()
        && CFBooleanGetValue(static_cast<CFBooleanRef>(value.get()));
}

} // namespace

QStringList MacScreenshotFolder::settings() const
{
    @autoreleasepool {
        const CfOwner<CFTypeRef> value(
            CFPreferencesCopyAppValue(CFSTR("location"), CFSTR("com.apple.screencapture")));
        if (!value || CFGetTypeID(value.get()) != CFStringGetTypeID())
            return {};
        return { QString::fromCFString(static_cast<CFStringRef>(value.get())) };
    }
}

QString MacScreenshotFolder::defaultFolder() const
{
    return QDir::homePath() + "/Desktop"_L1;
}

bool MacScreenshotFolder::isScreenCapture(const QString& path) const
{
    @autoreleasepool {
        if (const auto mark = markOf(path))
            return *mark;
        return isIndexedAsCapture(path);
    }
}

} // namespace nimbarrow

#include "macos/screenshots/CaptureMark.h"

namespace nimbarrow::capturemark {

namespace {

constexpr QByteArrayView header("bplist00");
// The table of places, of one byte, and the trailer follow the only object.
constexpr qsizetype trailer = 32;

} // namespace

std::optional<bool> valueOf(const QByteArray& propertyList)
{
    const auto place = header.size();
    if (!propertyList.startsWith(header) || propertyList.size() != place + 1 + 1 + trailer)
        return {};
    switch (propertyList.at(place)) {
    case 0x08: return false;
    case 0x09: return true;
    default: return {};
    }
}

} // namespace nimbarrow::capturemark

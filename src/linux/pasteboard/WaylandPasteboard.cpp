#include "linux/pasteboard/WaylandPasteboard.h"

#include "linux/pasteboard/WaylandSelection.h"

namespace nimbarrow {

WaylandPasteboard::WaylandPasteboard(const QByteArray& display, const PasteboardLimits& limits)
{
    start(std::make_unique<WaylandSelection>(display, limits, report()));
}

} // namespace nimbarrow

#include "linux/pasteboard/WaylandPasteboard.h"

#include "linux/pasteboard/WaylandSelection.h"

namespace nimbarrow {

WaylandPasteboard::WaylandPasteboard(const QByteArray& display, const PasteboardLimits& limits)
{
    auto selection = std::make_unique<WaylandSelection>(display, limits, report());
    m_selection = selection.get();
    start(std::move(selection));
}

void WaylandPasteboard::readDrop(
    std::unique_ptr<DropReading> reading, std::function<void(const PasteboardSnapshot&)> done)
{
    // A function can be copied, so what it holds is shared.
    const auto held = std::make_shared<std::unique_ptr<DropReading>>(std::move(reading));
    readOnThread([selection = m_selection, held](
                     ReadDone report) { selection->readDrop(std::move(*held), std::move(report)); },
        std::move(done));
}

} // namespace nimbarrow

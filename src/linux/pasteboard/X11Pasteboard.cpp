#include "linux/pasteboard/X11Pasteboard.h"

namespace nimbarrow {

X11Pasteboard::X11Pasteboard(const QByteArray& display, const PasteboardLimits& limits)
{
    auto selection = std::make_unique<X11Selection>(display, limits, report());
    m_selection = selection.get();
    start(std::move(selection));
}

void X11Pasteboard::readDrop(
    const X11Selection::Drag& drag, std::function<void(const PasteboardSnapshot&)> done)
{
    readOnThread(
        [selection = m_selection, drag](ReadDone report) { selection->readDrop(drag, std::move(report)); },
        std::move(done));
}

} // namespace nimbarrow

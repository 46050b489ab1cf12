#pragma once

#include "linux/pasteboard/SelectionPasteboard.h"
#include "linux/pasteboard/X11Selection.h"

namespace nimbarrow {

/// The pasteboard as the X server's CLIPBOARD selection.
class X11Pasteboard final : public SelectionPasteboard {
    Q_OBJECT

public:
    /// An empty display name means the one of the environment.
    explicit X11Pasteboard(const QByteArray& display = {}, const PasteboardLimits& limits = {});

    /// Reads what was dropped, without waiting for it; `done` runs on the main loop, unless the pasteboard is
    /// gone by then. What does not come is absent.
    void readDrop(const X11Selection::Drag& drag, std::function<void(const PasteboardSnapshot&)> done);

private:
    /// The thread's.
    X11Selection* m_selection = nullptr;
};

} // namespace nimbarrow

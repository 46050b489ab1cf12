#pragma once

#include "linux/pasteboard/SelectionPasteboard.h"

namespace nimbarrow {

class DropReading;
class WaylandSelection;

/// The pasteboard as the compositor's clipboard, seen and owned by the data control interfaces. Nothing keeps
/// there what a program has written when it ends, except a clipboard manager that has read it by then.
class WaylandPasteboard final : public SelectionPasteboard {
    Q_OBJECT

public:
    /// An empty display name means the one of the environment.
    explicit WaylandPasteboard(const QByteArray& display = {}, const PasteboardLimits& limits = {});

    /// Goes on reading what was dropped, without waiting for it; `done` runs on the main loop, unless the
    /// pasteboard is gone by then. What does not come is absent.
    void readDrop(std::unique_ptr<DropReading> reading, std::function<void(const PasteboardSnapshot&)> done);

private:
    /// The thread's.
    WaylandSelection* m_selection = nullptr;
};

} // namespace nimbarrow

#pragma once

#include "linux/pasteboard/SelectionPasteboard.h"

namespace nimbarrow {

/// The pasteboard as the compositor's clipboard, seen and owned by the data control interfaces. Nothing keeps
/// there what a program has written when it ends, except a clipboard manager that has read it by then.
class WaylandPasteboard final : public SelectionPasteboard {
    Q_OBJECT

public:
    /// An empty display name means the one of the environment.
    explicit WaylandPasteboard(const QByteArray& display = {}, const PasteboardLimits& limits = {});
};

} // namespace nimbarrow

#pragma once

#include "platform/MusicApp.h"

namespace nimbarrow {

/// A system without a music application of its own: it never runs.
class NoMusicApp final : public MusicApp {
    Q_OBJECT

public:
    [[nodiscard]] std::optional<Running> running() const override { return {}; }
};

} // namespace nimbarrow

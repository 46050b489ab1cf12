#pragma once

#include "platform/MusicApp.h"

namespace nimbarrow {

/// A music application that the test starts, plays and quits.
class FakeMusicApp final : public MusicApp {
    Q_OBJECT

public:
    [[nodiscard]] std::optional<Running> running() const override { return state; }

    void play() { Q_EMIT playerInfoChanged(); }
    void quit()
    {
        state.reset();
        Q_EMIT terminated();
    }

    std::optional<Running> state;
};

} // namespace nimbarrow

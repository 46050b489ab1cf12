#pragma once

#include "macos/session/Observation.h"
#include "platform/MusicApp.h"

namespace nimbarrow {

/// The Music application.
class MacMusicApp final : public MusicApp {
public:
    MacMusicApp();

    [[nodiscard]] std::optional<Running> running() const override;

private:
    Observation m_playerInfo;
    Observation m_terminated;
};

} // namespace nimbarrow

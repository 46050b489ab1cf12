#pragma once

#include "macos/session/Observation.h"
#include "platform/SessionLock.h"

#include <array>

namespace nimbarrow {

/// What the login window and the screen saver tell all programs.
class MacSessionLock final : public SessionLock {
public:
    MacSessionLock();

    [[nodiscard]] bool isLocked() const override { return m_isScreenLocked || m_isSaverRunning; }

private:
    void set(bool MacSessionLock::*state, bool value);

    bool m_isScreenLocked;
    bool m_isSaverRunning = false;
    std::array<Observation, 4> m_told;
};

} // namespace nimbarrow

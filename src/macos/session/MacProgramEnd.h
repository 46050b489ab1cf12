#pragma once

#include "macos/session/Observation.h"
#include "platform/ProgramEnd.h"

#include <memory>

namespace nimbarrow {

/// The ways in which a session ends a program: by a signal (SIGTERM, SIGINT, SIGHUP), and by its own end. The
/// display does not go before the session does. At most one in a process.
class MacProgramEnd final : public ProgramEnd {
public:
    MacProgramEnd();
    ~MacProgramEnd() override;

private:
    struct Signals;

    Observation m_powerOff;
    std::unique_ptr<Signals> m_signals;
};

} // namespace nimbarrow

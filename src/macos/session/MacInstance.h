#pragma once

#include "macos/session/Observation.h"
#include "platform/Instance.h"

#include <list>

namespace nimbarrow {

/// Copies of the program share a bundle identifier, and ask each other by notifications between programs.
class MacInstance final : public Instance {
public:
    MacInstance();

    [[nodiscard]] bool anotherIsRunning() override;
    [[nodiscard]] bool ask(Request request) override;

private:
    std::list<Observation> m_requests;
};

} // namespace nimbarrow

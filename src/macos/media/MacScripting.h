#pragma once

#include "platform/Scripting.h"

#include <memory>

namespace nimbarrow {

/// The scripting service of the system. It runs one script after the other: its parts are not made for
/// several threads at a time.
class MacScripting final : public Scripting {
public:
    MacScripting();
    ~MacScripting() override;

    [[nodiscard]] ScriptResult run(const QString& script) override;

private:
    struct Compiled;

    std::unique_ptr<Compiled> m_compiled;
};

} // namespace nimbarrow

#pragma once

#include "platform/Scripting.h"

namespace nimbarrow {

/// A system without a scripting service: every script fails.
class NoScripting final : public Scripting {
public:
    [[nodiscard]] ScriptResult run(const QString& /*script*/) override
    {
        return { ScriptResult::Error { false, QStringLiteral("There is no scripting service.") }, {} };
    }
};

} // namespace nimbarrow

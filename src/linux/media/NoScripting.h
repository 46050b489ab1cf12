#pragma once

#include "platform/Scripting.h"

namespace nimbarrow {

/// A system on which no program is driven by the text of a script: every run fails and says so.
class NoScripting final : public Scripting {
public:
    [[nodiscard]] ScriptResult run(const QString& /*script*/) override
    {
        return {
            ScriptResult::Error { false, QStringLiteral("There is no scripting service on this system") }, {}
        };
    }
};

} // namespace nimbarrow

#pragma once

#include "platform/Scripting.h"

#include <QStringList>

namespace nimbarrow {

/// Answers every script as the test says.
class FakeScripting final : public Scripting {
public:
    ScriptResult result;
    QStringList scripts;

    [[nodiscard]] ScriptResult run(const QString& script) override
    {
        scripts << script;
        return result;
    }
};

} // namespace nimbarrow

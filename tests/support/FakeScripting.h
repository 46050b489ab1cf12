#pragma once

#include "platform/Scripting.h"

#include <QHash>
#include <QStringList>

#include <optional>

namespace nimbarrow {

/// A scripting service that knows an answer to some scripts, and gives nothing to the others.
class FakeScripting final : public Scripting {
public:
    ScriptResult run(const QString& script) override
    {
        scripts << script;
        if (error)
            return { error, {} };
        for (auto answer = answers.cbegin(); answer != answers.cend(); ++answer) {
            if (script.contains(answer.key()))
                return { {}, answer.value() };
        }
        return {};
    }

    /// By a part of the script.
    QHash<QString, QVariantList> answers;
    QStringList scripts;
    /// Of every script, when set.
    std::optional<ScriptResult::Error> error;
};

} // namespace nimbarrow

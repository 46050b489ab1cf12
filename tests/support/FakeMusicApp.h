#pragma once

#include "platform/MusicApp.h"
#include "platform/Scripting.h"

#include <QHash>
#include <QStringList>

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

/// A scripting service that knows an answer to some scripts, and gives nothing to the others.
class FakeScripting final : public Scripting {
public:
    ScriptResult run(const QString& script) override
    {
        scripts << script;
        if (isRefused)
            return { ScriptResult::Error { true, {} }, {} };
        for (auto answer = answers.cbegin(); answer != answers.cend(); ++answer) {
            if (script.contains(answer.key()))
                return { {}, answer.value() };
        }
        return {};
    }

    /// By a part of the script.
    QHash<QString, QVariantList> answers;
    QStringList scripts;
    bool isRefused = false;
};

} // namespace nimbarrow

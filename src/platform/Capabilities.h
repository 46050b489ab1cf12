#pragma once

#include <QString>

#include <functional>
#include <map>
#include <utility>

namespace nimbarrow {

/// Whether a part of the program works in this session.
struct Capability {
    enum class State {
        Works,
        /// What to do instead stands in the words.
        NotHere,
        /// How to give it stands in the words.
        NeedsConsent,
        /// Whom it depends on has been asked and has not answered so far.
        NoAnswerYet
    };

    State state = State::Works;
    /// A short sentence; empty where it works.
    QString words;
    /// The same in Ukrainian, for what the surface shows too.
    QString ukrainianWords;
};

/// Port: what of the program works in this session. Each adapter answers for its own part, on the main thread
/// and without waiting for another program; a part that nobody answers for works.
class Capabilities final {
public:
    /// In the order in which they are told.
    enum class Part { Notch, Panel, Clipboard, HotKey, Paste, FrontApplication, Calendar, Player, KeepAwake };

    /// The answer that was set last counts.
    void set(Part part, std::function<Capability()> answer)
    {
        m_answers.insert_or_assign(part, std::move(answer));
    }

    [[nodiscard]] Capability of(Part part) const
    {
        const auto answer = m_answers.find(part);
        return answer == m_answers.cend() ? Capability() : answer->second();
    }

private:
    std::map<Part, std::function<Capability()>> m_answers;
};

} // namespace nimbarrow

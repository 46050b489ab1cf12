#pragma once

#include "platform/Instance.h"

#include <QSize>
#include <QStringList>

#include <optional>

namespace nimbarrow {

class Screens;
struct Platform;

/// What the program was started for. Reading it needs no application object, and answering no display.
class CommandLine final {
public:
    /// `arguments` begin with the program's own name.
    explicit CommandLine(const QStringList& arguments);
    /// As main() has them.
    CommandLine(int count, char** values);

    /// Answers what needs no program of its own, on the terminal or by asking the copy that runs. Then it is
    /// the status to end with: 0, 1 when nothing came of it, 2 when the command line is wrong.
    [[nodiscard]] std::optional<int> answer(Instance& instance) const;

    /// Answers what needs this session's ports, as `answer()` does.
    [[nodiscard]] std::optional<int> answerHere(const Platform& platform) const;

    /// As `answer()`, where the program cannot run for this reason.
    [[nodiscard]] int answerObstacle(const QString& obstacle) const;

    /// The program starts for its surface to be used from the keyboard.
    [[nodiscard]] bool isForKeyboard() const { return m_command == Command::Toggle; }

private:
    enum class Command { Start, Refuse, Help, Version, Toggle, Quit, Notch, Doctor };

    void readNotch(const QString& value);
    [[nodiscard]] int declareNotch(Screens& screens) const;

    Command m_command = Command::Start;
    /// For the terminal.
    QString m_help;
    QString m_mistake;
    /// In points; empty for none.
    QSize m_notch;
    /// Empty where none is named.
    QString m_screen;
};

} // namespace nimbarrow

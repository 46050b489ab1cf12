#include "app/CommandLine.h"

#include "settings/About.h"

#include <QCommandLineParser>

#include <cstdio>
#include <utility>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

QStringList texts(int count, char** values)
{
    QStringList result;
    for (int index = 0; index < count; ++index)
        result << QString::fromLocal8Bit(values[index]);
    return result;
}

void print(std::FILE* stream, const QString& text)
{
    std::fputs(qUtf8Printable(text), stream);
}

} // namespace

CommandLine::CommandLine(int count, char** values)
    : CommandLine(texts(count, values))
{
}

CommandLine::CommandLine(const QStringList& arguments)
{
    const std::pair<Command, QCommandLineOption> commands[] {
        { Command::Help, { { u"h"_s, u"help"_s }, u"Say what can be asked for, and end."_s } },
        { Command::Version, { { u"v"_s, u"version"_s }, u"Say which version this is, and end."_s } },
        { Command::Toggle,
            { u"toggle"_s,
                u"Open the panel for the keyboard, or close it. Starts Nimbarrow where it is not running."_s } },
        { Command::Quit, { u"quit"_s, u"End the Nimbarrow that is running."_s } },
    };
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"What you copied, in the notch of your display.\n"
        "Without an option it starts, or opens the panel of the copy that is running."_s);
    for (const auto& [command, option] : commands)
        parser.addOption(option);
    const bool isRead = parser.parse(arguments);
    // The parser knows no program's name before there is an application object.
    m_help = parser.helpText().replace("<executable_name>"_L1, "nimbarrow"_L1);
    if (!isRead)
        m_mistake = parser.errorText();
    else if (const auto more = parser.positionalArguments(); !more.isEmpty())
        m_mistake = u"Unexpected argument '%1'."_s.arg(more.first());
    else if (parser.optionNames().size() > 1)
        m_mistake = u"Only one option can be asked for."_s;
    if (!m_mistake.isEmpty()) {
        m_command = Command::Refuse;
        return;
    }
    for (const auto& [command, option] : commands) {
        if (parser.isSet(option))
            m_command = command;
    }
}

std::optional<int> CommandLine::answer(Instance& instance) const
{
    switch (m_command) {
    case Command::Start: break;
    case Command::Refuse:
        print(stderr, u"Nimbarrow: %1\nTry 'nimbarrow --help'.\n"_s.arg(m_mistake));
        return 2;
    case Command::Help: print(stdout, m_help); return 0;
    case Command::Version: print(stdout, About::version() + u'\n'); return 0;
    case Command::Toggle:
        if (instance.ask(Instance::Request::ToggleKeyboard))
            return 0;
        break;
    case Command::Quit:
        if (instance.ask(Instance::Request::Quit))
            return 0;
        print(stderr, u"Nimbarrow: no running copy has answered.\n"_s);
        return 1;
    }
    return {};
}

} // namespace nimbarrow

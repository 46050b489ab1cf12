#include "app/CommandLine.h"

#include "app/Doctor.h"
#include "platform/Platform.h"
#include "settings/About.h"

#include <QCommandLineParser>
#include <QRegularExpression>

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
        { Command::Notch,
            { u"notch"_s,
                u"Show the panel at the top of a screen, as if it had a notch W points wide and H high; "
                "none: do not. Without a name it is the built-in screen."_s,
                u"WxH[@SCREEN]|none[@SCREEN]"_s } },
        { Command::Doctor,
            { u"doctor"_s, u"Say what of Nimbarrow works in this session, and what to do else."_s } },
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
    else if (parser.isSet(u"notch"_s))
        readNotch(parser.value(u"notch"_s));
    if (!m_mistake.isEmpty()) {
        m_command = Command::Refuse;
        return;
    }
    for (const auto& [command, option] : commands) {
        if (parser.isSet(option))
            m_command = command;
    }
}

void CommandLine::readNotch(const QString& value)
{
    static const QRegularExpression form(u"^(?:none|([1-9]\\d{0,3})x([1-9]\\d{0,3}))(?:@(.+))?$"_s);
    const auto match = form.match(value);
    if (match.hasMatch()) {
        m_notch = { match.captured(1).toInt(), match.captured(2).toInt() };
        m_screen = match.captured(3);
    } else {
        m_mistake = u"'%1' is no notch; 200x32 and none are, and 200x32@eDP-1."_s.arg(value);
    }
}

std::optional<int> CommandLine::answer(Instance& instance) const
{
    switch (m_command) {
    case Command::Start:
    case Command::Notch: break;
    case Command::Refuse:
        print(stderr, u"Nimbarrow: %1\nTry 'nimbarrow --help'.\n"_s.arg(m_mistake));
        return 2;
    case Command::Help: print(stdout, m_help); return 0;
    case Command::Version: print(stdout, About::version() + u'\n'); return 0;
    case Command::Toggle:
        if (instance.ask(Instance::Request::ToggleKeyboard))
            return 0;
        break;
    case Command::Doctor:
        if (const auto report = instance.askForReport()) {
            print(stdout, *report);
            return 0;
        }
        break;
    case Command::Quit:
        if (instance.ask(Instance::Request::Quit))
            return 0;
        print(stderr, u"Nimbarrow: no running copy has answered.\n"_s);
        return 1;
    }
    return {};
}

std::optional<int> CommandLine::answerHere(const Platform& platform) const
{
    if (m_command == Command::Notch)
        return declareNotch(*platform.screens);
    if (m_command != Command::Doctor)
        return {};
    print(stdout, doctor::awaitReport(platform));
    return 0;
}

int CommandLine::answerObstacle(const QString& obstacle) const
{
    if (m_command == Command::Doctor)
        print(stdout, doctor::report(obstacle));
    else
        print(stderr, "Nimbarrow: "_L1 + obstacle + u'\n');
    return 1;
}

int CommandLine::declareNotch(Screens& screens) const
{
    const auto screen = m_screen.isEmpty() ? screens.screenToDeclare() : m_screen;
    const auto declared = screens.declareNotch(screen, m_notch);
    if (declared.place.isEmpty()) {
        print(stderr, "Nimbarrow: "_L1 + declared.failure + u'\n');
        return 1;
    }
    const auto what = m_notch.isEmpty()
        ? u"no notch"_s
        : u"a notch %1 points wide and %2 high"_s.arg(m_notch.width()).arg(m_notch.height());
    print(stdout, u"The screen %1 has %2 from now on, says\n%3\n"_s.arg(screen, what, declared.place));
    return 0;
}

} // namespace nimbarrow

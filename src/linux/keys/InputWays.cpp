#include "linux/keys/InputWays.h"

#include <QStringList>

#include <array>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

struct Line {
    QLatin1StringView desktop;
    QLatin1StringView text;
};

constexpr std::array lines {
    Line { "sway"_L1, "bindsym Mod4+Shift+v exec nimbarrow --toggle"_L1 },
    Line { "i3"_L1, "bindsym Mod4+Shift+v exec nimbarrow --toggle"_L1 },
    Line { "Hyprland"_L1, "bind = SUPER SHIFT, V, exec, nimbarrow --toggle"_L1 },
    Line { "labwc"_L1,
        R"(<keybind key="W-S-v"><action name="Execute" command="nimbarrow --toggle"/></keybind>)"_L1 },
};

} // namespace

FrontWay frontWay(const InputFacts& facts)
{
    if (facts.system == DisplaySystem::X11)
        return FrontWay::X11;
    if (facts.listsToplevels)
        return FrontWay::ForeignToplevels;
    // An X server inside a compositor tells of its own windows alone, and would name the wrong one.
    return facts.isKWin ? FrontWay::KWin : FrontWay::Nothing;
}

PasteWay pasteWay(const InputFacts& facts)
{
    if (facts.system == DisplaySystem::X11)
        return PasteWay::TestExtension;
    if (facts.lendsKeyboards)
        return PasteWay::VirtualKeyboard;
    return facts.takesFakeInput ? PasteWay::FakeInput : PasteWay::Portal;
}

HotKeyWay hotKeyWay(const BusKeyFacts& facts)
{
    // KDE has the portal too, but asks there for what its shortcuts need no question for.
    if (facts.isKWin && facts.hasGlobalAccel)
        return HotKeyWay::GlobalAccel;
    if (facts.globalShortcuts > 0)
        return HotKeyWay::Portal;
    return facts.hasCustomKeys ? HotKeyWay::Custom : HotKeyWay::Nothing;
}

QString hotKeyLine(const QString& desktops)
{
    for (const auto names = desktops.split(u':'); const auto& name : names) {
        for (const auto& line : lines) {
            if (name.compare(line.desktop, Qt::CaseInsensitive) == 0)
                return line.text;
        }
    }
    return {};
}

} // namespace nimbarrow

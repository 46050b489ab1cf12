#include "linux/keys/InputWays.h"

namespace nimbarrow {

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
    return facts.globalShortcuts > 0 ? HotKeyWay::Portal : HotKeyWay::Nothing;
}

} // namespace nimbarrow

#include "linux/DisplayPorts.h"
#include "linux/keys/BusHotKeys.h"
#include "linux/keys/CustomKey.h"
#include "linux/keys/RemoteDesktop.h"
#include "linux/session/SessionBus.h"

#include <QCoreApplication>
#include <QLocale>

using namespace Qt::StringLiterals;

namespace nimbarrow {

void addTypingCapability(Platform& platform)
{
    platform.capabilities.set(Capabilities::Part::Paste, [&trust = *platform.accessibilityTrust] {
        return unless(trust.isTrusted(), u"Programs may not type here: press Control-V after the click."_s,
            u"Програмам тут не дозволено друкувати: після кліку натисни Control-V."_s);
    });
}

void addBusHotKeys(Platform& platform, bool isKWin)
{
    // In the language of the system's settings, where it stands.
    const auto isUkrainian = QLocale::system().language() == QLocale::Ukrainian;
    BusHotKeys::Maker custom;
    if (qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':').contains("GNOME"_L1)) {
        custom = [&questions = *platform.questions, &defaults = *platform.userDefaults,
                     &queues = *platform.workQueues](std::function<void(bool)> bound) {
            const auto program = QCoreApplication::applicationFilePath().replace(u'\'', R"('\'')"_L1);
            return std::make_unique<CustomKey>(
                u'\'' + program + "' --toggle"_L1, questions, defaults, queues, std::move(bound));
        };
    }
    auto keys = std::make_unique<BusHotKeys>(liveSessionBus(), *platform.userDefaults, isKWin,
        isUkrainian ? u"Показати або сховати історію"_s : u"Show or hide the history"_s, std::move(custom));
    platform.capabilities.set(Capabilities::Part::HotKey, [&keys = *keys] {
        const auto line = hotKeyLine(qEnvironmentVariable("XDG_CURRENT_DESKTOP"));
        const auto advice = line.isEmpty() ? u"nimbarrow --toggle"_s : line;
        // Nobody has said yet that there is one, or none.
        return unless(keys.way().value_or(HotKeyWay::Portal) != HotKeyWay::Nothing,
            u"No program gets a hot key here. Give the desktop a key of its own: %1"_s.arg(advice),
            u"Програми тут не мають гарячих клавіш. Признач клавіші системи: %1"_s.arg(advice));
    });
    platform.hotKeys = std::move(keys);
}

void addPortalKeystrokes(Platform& platform, const DesktopApplications& applications)
{
    auto desktop = std::make_unique<RemoteDesktop>(liveSessionBus(),
        platform.locations->applicationSupport() + "/Nimbarrow/remote-desktop-token"_L1,
        *platform.workQueues);
    platform.keystrokes = std::make_unique<RemoteDesktopKeystrokes>(*desktop, applications);
    platform.capabilities.set(Capabilities::Part::Paste, [&desktop = *desktop] {
        using State = RemoteDesktop::State;
        const auto state = desktop.state();
        if (state == State::NotDetermined) {
            return Capability { Capability::State::NeedsConsent,
                u"The desktop asks for your consent once: switch on \"Paste on click\" in the settings."_s,
                u"Система спитає дозволу один раз: увімкни вставлення кліком у налаштуваннях."_s };
        }
        return unless(state == State::Trusted,
            u"Programs may not type here: press Control-V after the click."_s,
            u"Програмам тут не дозволено друкувати: після кліку натисни Control-V."_s);
    });
    platform.accessibilityTrust = std::move(desktop);
}

} // namespace nimbarrow

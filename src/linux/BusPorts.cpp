#include "linux/DisplayPorts.h"
#include "linux/keys/BusHotKeys.h"
#include "linux/keys/RemoteDesktop.h"
#include "linux/session/SessionBus.h"

#include <QLocale>

using namespace Qt::StringLiterals;

namespace nimbarrow {

void addBusHotKeys(Platform& platform, bool isKWin)
{
    // In the language of the system's settings, where it stands.
    const auto isUkrainian = QLocale::system().language() == QLocale::Ukrainian;
    platform.hotKeys = std::make_unique<BusHotKeys>(liveSessionBus(), isKWin,
        isUkrainian ? u"Показати або сховати історію"_s : u"Show or hide the history"_s);
}

void addPortalKeystrokes(Platform& platform, const DesktopApplications& applications)
{
    auto desktop = std::make_unique<RemoteDesktop>(liveSessionBus(),
        platform.locations->applicationSupport() + "/Nimbarrow/remote-desktop-token"_L1,
        *platform.workQueues);
    platform.keystrokes = std::make_unique<RemoteDesktopKeystrokes>(*desktop, applications);
    platform.accessibilityTrust = std::move(desktop);
}

} // namespace nimbarrow

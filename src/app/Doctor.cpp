#include "app/Doctor.h"

#include "notch/NotchGeometry.h"
#include "platform/Platform.h"
#include "settings/About.h"

#include <QGuiApplication>

#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace nimbarrow::doctor {

namespace {

using Part = Capabilities::Part;

/// Those who answer at all do so in a moment.
constexpr auto patience = 3s;

constexpr std::pair<Part, QLatin1StringView> parts[] {
    { Part::Notch, "notch"_L1 },
    { Part::Panel, "panel"_L1 },
    { Part::Clipboard, "clipboard"_L1 },
    { Part::HotKey, "hot key"_L1 },
    { Part::Paste, "paste"_L1 },
    { Part::FrontApplication, "front application"_L1 },
    { Part::Calendar, "calendar"_L1 },
    { Part::Player, "player"_L1 },
    { Part::KeepAwake, "keep awake"_L1 },
};

Capability notch(const Screens& screens)
{
    if (NotchGeometry::find(screens.screens()))
        return {};
    const auto screen = screens.screenToDeclare();
    return { Capability::State::NotHere,
        screen.isEmpty()
            ? u"No screen has one."_s
            : u"No screen has one: 'nimbarrow --notch 200x32@%1' puts the panel there."_s.arg(screen),
        {} };
}

Capability calendar(CalendarStore& store)
{
    switch (store.authorization()) {
    case CalendarStore::Authorization::FullAccess:
    case CalendarStore::Authorization::WriteOnly: break;
    case CalendarStore::Authorization::NotDetermined:
        return { Capability::State::NeedsConsent, u"Open the panel and choose \"Show today's calendar\"."_s,
            {} };
    case CalendarStore::Authorization::Restricted:
    case CalendarStore::Authorization::Denied:
        return { Capability::State::NotHere,
            u"No calendar can be read: see to the one you use, or to its server."_s, {} };
    }
    return {};
}

/// Of what every system tells in the same way its ports are asked.
Capability capabilityOf(Part part, const Platform& platform)
{
    switch (part) {
    case Part::Notch: return notch(*platform.screens);
    case Part::Calendar: return calendar(*platform.calendarStore);
    default: return platform.capabilities.of(part);
    }
}

QString nameOf(Capability::State state)
{
    switch (state) {
    case Capability::State::Works: return u"works"_s;
    case Capability::State::NotHere: return u"not here"_s;
    case Capability::State::NeedsConsent: return u"needs your consent"_s;
    case Capability::State::NoAnswerYet: return u"no answer yet"_s;
    }
    return {};
}

QString heading(const QString& display)
{
    return u"%1, Qt %2, %3\n"_s.arg(About::version(), QString::fromLatin1(qVersion()), display);
}

} // namespace

QString awaitReport(const Platform& platform)
{
    bool isLate = false;
    const auto timer = platform.scheduler->after(patience, [&isLate] { isLate = true; });
    for (const auto& [part, name] : parts) {
        while (!isLate && capabilityOf(part, platform).state == Capability::State::NoAnswerYet)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return report(platform);
}

QString report(const Platform& platform)
{
    auto text = heading(QGuiApplication::platformName());
    for (const auto& [part, name] : parts) {
        const auto capability = capabilityOf(part, platform);
        auto line = "  "_L1 + QString(name).leftJustified(19) + nameOf(capability.state);
        if (!capability.words.isEmpty())
            line = line.leftJustified(41) + capability.words;
        text += line + u'\n';
    }
    return text;
}

QString report(const QString& obstacle)
{
    return heading(u"no display"_s) + u"  nothing works here: %1\n"_s.arg(obstacle);
}

} // namespace nimbarrow::doctor

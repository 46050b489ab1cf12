#include "macos/session/MacProgramEnd.h"

#include <AppKit/AppKit.h>
#include <array>
#include <csignal>
#include <dispatch/dispatch.h>

namespace nimbarrow {

namespace {

constexpr std::array endingSignals { SIGTERM, SIGINT, SIGHUP };

} // namespace

struct MacProgramEnd::Signals {
    std::array<dispatch_source_t, endingSignals.size()> sources;
};

MacProgramEnd::MacProgramEnd()
    : m_powerOff(Observation::Centre::Workspace, QString::fromNSString(NSWorkspaceWillPowerOffNotification),
        [this] { Q_EMIT sessionMayEnd(); })
    , m_signals(std::make_unique<Signals>())
{
    for (std::size_t place = 0; place < endingSignals.size(); ++place) {
        const int number = endingSignals.at(place);
        // Who started the program with a signal ignored wants that, as nohup does.
        if (std::signal(number, SIG_IGN) == SIG_IGN)
            continue;
        auto* const source = dispatch_source_create(
            DISPATCH_SOURCE_TYPE_SIGNAL, static_cast<uintptr_t>(number), 0, dispatch_get_main_queue());
        if (!source) {
            std::signal(number, SIG_DFL);
            continue;
        }
        dispatch_source_set_event_handler(source, ^{ Q_EMIT requested(); });
        dispatch_activate(source);
        m_signals->sources.at(place) = source;
    }
}

MacProgramEnd::~MacProgramEnd()
{
    for (std::size_t place = 0; place < endingSignals.size(); ++place) {
        if (auto* const source = m_signals->sources.at(place)) {
            dispatch_source_cancel(source);
            std::signal(endingSignals.at(place), SIG_DFL);
        }
    }
}

} // namespace nimbarrow

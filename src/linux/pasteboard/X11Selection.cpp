#include "linux/pasteboard/X11Selection.h"

#include "linux/display/X11Properties.h"

#include <algorithm>
#include <array>
#include <poll.h>
#include <utility>
#include <xcb/xfixes.h>

namespace nimbarrow {

X11Selection::X11Selection(const QByteArray& display, const PasteboardLimits& limits, Report report)
    : m_connection(display)
    , m_limits(limits)
    , m_report(std::move(report))
{
    if (!m_connection.works())
        return;
    m_selection = m_connection.atom("CLIPBOARD");
    m_owner = std::make_unique<X11PasteboardOwner>(m_connection, m_selection);
    m_connection.watchOwner(m_owner->window(), m_selection);
}

void X11Selection::readDrop(const Drag& drag, std::function<void(PasteboardSnapshot)> done)
{
    auto list = QByteArray(reinterpret_cast<const char*>(drag.targets.data()),
        static_cast<qsizetype>(drag.targets.size() * sizeof(xcb_atom_t)));
    if (list.isEmpty())
        list = x11::property(m_connection.get(), drag.source, m_connection.atom("XdndTypeList"));
    m_drops.add(
        std::make_unique<X11PasteboardReading>(m_connection, m_connection.atom("XdndSelection"),
            m_connection.names(list.left(mostTargets * qsizetype(sizeof(xcb_atom_t)))), drag.time, m_limits),
        std::move(done));
    reportResults();
}

void X11Selection::claim(const std::deque<Write>& writes)
{
    for (const auto& write : writes) {
        ++m_claims;
        m_owner->claim(write.content);
    }
    m_connection.sync();
}

void X11Selection::addImage(const QByteArray& png)
{
    if (!png.isEmpty())
        m_owner->add("image/png", png);
}

void X11Selection::step(int wakeup)
{
    using Event = X11PasteboardConnection::Reply<xcb_generic_event_t>;
    const auto now = PasteboardInstant::clock::now();
    m_owner->expire(now);
    m_readings.expire(now);
    m_drops.expire(now);
    if (const Event event { xcb_poll_for_event(m_connection.get()) }) {
        handle(*event);
        return;
    }
    xcb_flush(m_connection.get());
    // Sending may have received, and what was received does not wake the poll.
    if (const Event event { xcb_poll_for_queued_event(m_connection.get()) }) {
        handle(*event);
        return;
    }
    sleep(wakeup);
}

void X11Selection::handle(const xcb_generic_event_t& event)
{
    if ((event.response_type & 0x7f) == m_connection.ownerChangeEvent()) {
        const auto& change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
        const bool vanished = change.subtype != XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER;
        ownerChanged(
            vanished ? xcb_window_t(XCB_WINDOW_NONE) : change.owner, change.timestamp, event.full_sequence);
        return;
    }
    const auto handles = [&event](X11PasteboardReading& reading) { return reading.handle(event); };
    if (!m_readings.any(handles) && !m_drops.any(handles))
        m_owner->handle(event);
    reportResults();
}

void X11Selection::ownerChanged(xcb_window_t owner, xcb_timestamp_t time, uint32_t sequence)
{
    m_readings.any([owner, sequence](X11PasteboardReading& reading) {
        reading.supersede(owner, sequence);
        return false;
    });
    reportResults();
    if (owner == m_owner->window()) {
        m_owner->setTime(time);
        ++m_claimsSeen;
        return;
    }
    // A claim that the server has not come to yet is newer than this change.
    if (m_claimsSeen == m_claims)
        m_owner->release();
    ++m_sequence;
    if (owner == XCB_WINDOW_NONE) {
        m_report({ m_claimsSeen, m_sequence, false, {} });
        return;
    }
    m_readings.add(std::make_unique<X11PasteboardReading>(m_connection, m_selection, owner, time, m_limits),
        [this, before = m_claimsSeen, sequence = m_sequence](PasteboardSnapshot content) {
            m_report({ before, sequence, true, std::move(content) });
        });
}

void X11Selection::reportResults()
{
    m_readings.reportResults();
    m_drops.reportResults();
}

void X11Selection::sleep(int wakeup)
{
    const auto deadline = std::min({ m_owner->deadline(), m_readings.deadline(), m_drops.deadline() });
    std::array<pollfd, 2> sources { pollfd { xcb_get_file_descriptor(m_connection.get()), POLLIN, 0 },
        pollfd { wakeup, POLLIN, 0 } };
    poll(sources.data(), sources.size(), waitUntil(deadline));
}

} // namespace nimbarrow

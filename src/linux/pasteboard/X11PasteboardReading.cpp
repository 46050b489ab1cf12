#include "linux/pasteboard/X11PasteboardReading.h"

using namespace Qt::StringLiterals;

namespace nimbarrow {

X11PasteboardReading::X11PasteboardReading(X11PasteboardConnection& connection, xcb_atom_t selection,
    xcb_window_t owner, xcb_timestamp_t time, const PasteboardLimits& limits)
    : PasteboardReading(limits)
    , m_connection(connection)
    , m_selection(selection)
    , m_owner(owner)
    , m_time(time)
{
    list(u"TARGETS"_s);
}

X11PasteboardReading::X11PasteboardReading(X11PasteboardConnection& connection, xcb_atom_t selection,
    const QStringList& targets, xcb_timestamp_t time, const PasteboardLimits& limits)
    : PasteboardReading(limits)
    , m_connection(connection)
    , m_selection(selection)
    , m_owner(XCB_WINDOW_NONE)
    , m_time(time)
{
    read(targets);
}

std::unique_ptr<X11PasteboardTransfer> X11PasteboardReading::ask(
    const QString& target, qsizetype room, const PasteboardLimits& limits)
{
    return std::make_unique<X11PasteboardTransfer>(
        m_connection, m_selection, m_connection.atom(target.toUtf8()), m_time, room, limits);
}

QStringList X11PasteboardReading::targets(const X11PasteboardTransfer& listing)
{
    return m_connection.names(listing.bytes());
}

bool X11PasteboardReading::handle(const xcb_generic_event_t& event)
{
    const bool mine = std::any_of(transfers().begin(), transfers().end(),
        [&event](const auto& transfer) { return transfer->handle(event); });
    if (mine)
        advance();
    return mine;
}

void X11PasteboardReading::supersede(xcb_window_t newOwner, uint32_t sequence)
{
    if (finished())
        return;
    setSuperseded();
    auto& current = *transfers().back();
    // What was asked too late goes to the new owner, whose own list may forbid to ask for it. And the same
    // window answers even what was asked in time with its newer content, which is read anyway.
    const bool misled = current.askedAfter(sequence) || (m_owner == newOwner && !current.answered());
    if (isListing() || misled) {
        // The window waits for the answer all the same: the error of finding it gone ends many a program, and
        // with it what it copied.
        current.forget();
        finish();
    }
}

} // namespace nimbarrow

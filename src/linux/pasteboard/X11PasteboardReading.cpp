#include "linux/pasteboard/X11PasteboardReading.h"

#include "linux/pasteboard/MimeTypes.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

// No program offers thousands of forms; who does wants to keep others busy.
constexpr qsizetype targetListBytes = qsizetype(4) * 2048;

} // namespace

X11PasteboardReading::X11PasteboardReading(X11PasteboardConnection& connection, xcb_atom_t selection,
    xcb_window_t owner, xcb_timestamp_t time, const X11PasteboardLimits& limits)
    : m_connection(connection)
    , m_selection(selection)
    , m_owner(owner)
    , m_time(time)
    , m_limits(limits)
    , m_end(Instant::clock::now() + limits.whole)
{
    ask(u"TARGETS"_s);
}

X11PasteboardReading::X11PasteboardReading(X11PasteboardConnection& connection, xcb_atom_t selection,
    const QStringList& targets, xcb_timestamp_t time, const X11PasteboardLimits& limits)
    : m_connection(connection)
    , m_selection(selection)
    , m_owner(XCB_WINDOW_NONE)
    , m_time(time)
    , m_limits(limits)
    , m_end(Instant::clock::now() + limits.whole)
{
    m_reader.emplace(targets);
    if (m_reader->next().isEmpty())
        finish();
    else
        ask(m_reader->next());
}

void X11PasteboardReading::ask(const QString& target)
{
    auto limits = m_limits;
    limits.whole = std::chrono::duration_cast<std::chrono::milliseconds>(m_end - Instant::clock::now());
    m_transfers.push_back(std::make_unique<X11PasteboardTransfer>(
        m_connection, m_selection, m_connection.atom(target.toUtf8()), m_time, roomFor(target), limits));
}

qsizetype X11PasteboardReading::roomFor(const QString& target) const
{
    if (!m_reader)
        return targetListBytes;
    return mimetypes::formOf(target) == mimetypes::Form::Image ? m_limits.imageBytes : m_limits.textBytes;
}

bool X11PasteboardReading::handle(const xcb_generic_event_t& event)
{
    const bool mine = std::any_of(m_transfers.begin(), m_transfers.end(),
        [&event](const auto& transfer) { return transfer->handle(event); });
    if (mine)
        advance();
    return mine;
}

void X11PasteboardReading::expire(Instant now)
{
    for (const auto& transfer : m_transfers)
        transfer->expire(now);
    advance();
}

X11PasteboardReading::Instant X11PasteboardReading::deadline() const
{
    auto first = Instant::max();
    for (const auto& transfer : m_transfers)
        first = std::min(first, transfer->deadline());
    return first;
}

void X11PasteboardReading::supersede(xcb_window_t newOwner, uint32_t sequence)
{
    if (m_finished)
        return;
    m_superseded = true;
    const auto& current = *m_transfers.back();
    // What was asked too late goes to the new owner, whose own list may forbid to ask for it. And the same
    // window answers even what was asked in time with its newer content, which is read anyway.
    const bool misled = current.askedAfter(sequence) || (m_owner == newOwner && !current.answered());
    const bool listing = !m_reader;
    if (listing || misled) {
        // The window waits for the answer all the same: the error of finding it gone ends many a program, and
        // with it what it copied.
        m_transfers.back()->forget();
        finish();
    }
}

void X11PasteboardReading::advance()
{
    while (!m_finished && m_transfers.back()->complete()) {
        const auto& current = *m_transfers.back();
        if (!m_reader) {
            m_reader.emplace(current.cut() ? QStringList() : m_connection.names(current.bytes()));
        } else {
            // The beginning of a long text is worth keeping; the beginning of an image or a list is not.
            if (current.cut() && mimetypes::formOf(m_reader->next()) != mimetypes::Form::Text)
                m_reader->refuse();
            else
                m_reader->take(current.bytes());
        }
        if (m_reader->next().isEmpty() || m_superseded || Instant::clock::now() >= m_end) {
            finish();
        } else {
            ask(m_reader->next());
        }
    }
    std::erase_if(m_transfers, [this](const auto& transfer) {
        return transfer->over() && (m_finished || transfer != m_transfers.back());
    });
}

void X11PasteboardReading::finish()
{
    m_finished = true;
    // What the old owner can no longer give is the new owner's to tell.
    if (m_reader && (!m_superseded || m_reader->snapshot().hasContent()))
        m_result = m_reader->snapshot();
}

std::optional<PasteboardSnapshot> X11PasteboardReading::takeResult()
{
    return std::exchange(m_result, std::nullopt);
}

bool X11PasteboardReading::over() const
{
    return m_finished && !m_result && m_transfers.empty();
}

} // namespace nimbarrow

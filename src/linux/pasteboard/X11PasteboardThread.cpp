#include "linux/pasteboard/X11PasteboardThread.h"

#include "linux/display/X11Properties.h"

#include <algorithm>
#include <array>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <utility>
#include <xcb/xfixes.h>

namespace nimbarrow {

namespace {

// Owners that freeze one after the other hold no more than this many unfinished readings.
constexpr std::size_t mostReadings = 4;

// In bytes of atoms: no program drags more forms than this.
constexpr qsizetype mostTargets = qsizetype(4) * 2048;

constexpr auto handOverPatience = std::chrono::seconds(1);

constexpr auto claimPatience = std::chrono::milliseconds(250);

} // namespace

X11PasteboardThread::X11PasteboardThread(
    const QByteArray& display, const X11PasteboardLimits& limits, std::function<void(Change)> report)
    : m_connection(display)
    , m_limits(limits)
    , m_report(std::move(report))
{
    if (!m_connection.works())
        return;
    m_wakeup = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (m_wakeup < 0)
        return;
    m_selection = m_connection.atom("CLIPBOARD");
    m_owner = std::make_unique<X11PasteboardOwner>(m_connection, m_selection);
    m_connection.watchOwner(m_owner->window(), m_selection);
    m_works = true;
    m_thread = std::thread([this] { run(); });
}

X11PasteboardThread::~X11PasteboardThread()
{
    m_stop = true;
    if (m_thread.joinable()) {
        wake();
        m_thread.join();
    }
    if (m_wakeup >= 0)
        close(m_wakeup);
}

void X11PasteboardThread::wake() const
{
    const quint64 one = 1;
    // A full counter wakes as well, so nothing is lost when this fails.
    [[maybe_unused]] const auto written = ::write(m_wakeup, &one, sizeof one);
}

void X11PasteboardThread::write(Write write)
{
    if (!m_works)
        return;
    std::unique_lock lock(m_mutex);
    m_writes.push_back(std::move(write));
    const auto turn = ++m_writesGiven;
    wake();
    // Only the X server stands behind this wait: a paste keystroke often follows at once. An image that is
    // still being made is not waited for: the selection is claimed then, and who pastes is answered after it,
    // with the newest write.
    m_claimed.wait_for(
        lock, claimPatience, [this, turn] { return m_writesClaimed >= turn || m_drawing || !m_works; });
}

void X11PasteboardThread::readDrop(const Drag& drag, DropDone done)
{
    {
        const std::scoped_lock lock(m_mutex);
        if (m_works) {
            m_newDrops.emplace_back(drag, std::move(done));
            wake();
            return;
        }
    }
    done({});
}

void X11PasteboardThread::beginDrops()
{
    std::list<std::pair<Drag, DropDone>> drops;
    {
        const std::scoped_lock lock(m_mutex);
        drops.swap(m_newDrops);
    }
    for (auto& [drag, done] : drops) {
        auto list = QByteArray(reinterpret_cast<const char*>(drag.targets.data()),
            static_cast<qsizetype>(drag.targets.size() * sizeof(xcb_atom_t)));
        if (list.isEmpty())
            list = x11::property(m_connection.get(), drag.source, m_connection.atom("XdndTypeList"));
        m_drops.push_back({ std::move(done),
            { m_connection, m_connection.atom("XdndSelection"), m_connection.names(list.left(mostTargets)),
                drag.time, m_limits } });
    }
    // Sources that freeze hold no more than whoever copies and freezes.
    while (m_drops.size() > mostReadings)
        m_drops.pop_front();
    reportResults();
}

void X11PasteboardThread::handOver()
{
    std::unique_lock lock(m_mutex);
    if (!m_works)
        return;
    m_handOver = HandOver::Wanted;
    wake();
    m_handedOver.wait_for(
        lock, handOverPatience, [this] { return m_handOver == HandOver::None || !m_works; });
}

void X11PasteboardThread::serveHandOver()
{
    const std::scoped_lock lock(m_mutex);
    if (m_handOver == HandOver::Wanted) {
        m_owner->save();
        m_handOver = HandOver::Begun;
    }
    if (m_handOver == HandOver::Begun && !m_owner->isGiving()) {
        m_handOver = HandOver::None;
        m_handedOver.notify_all();
    }
}

void X11PasteboardThread::run()
{
    pthread_setname_np(pthread_self(), "pasteboard");
    using Event = X11PasteboardConnection::Reply<xcb_generic_event_t>;
    while (!m_stop && m_connection.works()) {
        runWrites();
        serveHandOver();
        beginDrops();
        expire();
        if (const Event event { xcb_poll_for_event(m_connection.get()) }) {
            handle(*event);
            continue;
        }
        xcb_flush(m_connection.get());
        // Sending may have received, and what was received does not wake the poll.
        if (const Event event { xcb_poll_for_queued_event(m_connection.get()) }) {
            handle(*event);
            continue;
        }
        sleep();
    }
    {
        const std::scoped_lock lock(m_mutex);
        m_works = false;
    }
    m_claimed.notify_all();
    m_handedOver.notify_all();
}

void X11PasteboardThread::runWrites()
{
    std::unique_lock lock(m_mutex);
    while (!m_writes.empty() && !m_stop) {
        const auto writes = std::exchange(m_writes, {});
        lock.unlock();
        claim(writes);
        lock.lock();
        m_writesClaimed += static_cast<int>(writes.size());
        // The image of a write that another one has replaced by now is nobody's business.
        m_drawing = m_writes.empty() && writes.back().png;
        lock.unlock();
        m_claimed.notify_all();
        if (m_drawing)
            addImage(writes.back());
        lock.lock();
        m_drawing = false;
    }
}

void X11PasteboardThread::claim(const std::deque<Write>& writes)
{
    for (const auto& write : writes) {
        ++m_claims;
        m_owner->claim(write.content);
    }
    m_connection.sync();
}

void X11PasteboardThread::addImage(const Write& write)
{
    const auto png = write.png();
    if (!png.isEmpty())
        m_owner->add("image/png", png);
}

void X11PasteboardThread::handle(const xcb_generic_event_t& event)
{
    if ((event.response_type & 0x7f) == m_connection.ownerChangeEvent()) {
        const auto& change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
        const bool vanished = change.subtype != XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER;
        ownerChanged(
            vanished ? xcb_window_t(XCB_WINDOW_NONE) : change.owner, change.timestamp, event.full_sequence);
        return;
    }
    const auto handles = [&event](auto& entry) { return entry.reading.handle(event); };
    if (std::none_of(m_readings.begin(), m_readings.end(), handles)
        && std::none_of(m_drops.begin(), m_drops.end(), handles))
        m_owner->handle(event);
    reportResults();
}

void X11PasteboardThread::ownerChanged(xcb_window_t owner, xcb_timestamp_t time, uint32_t sequence)
{
    for (auto& entry : m_readings)
        entry.reading.supersede(owner, sequence);
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
    if (m_readings.size() >= mostReadings) {
        const auto spare = std::find_if(m_readings.begin(), m_readings.end(),
            [](const Entry& entry) { return entry.reading.finished(); });
        m_readings.erase(spare != m_readings.end() ? spare : m_readings.begin());
    }
    m_readings.push_back({ m_claimsSeen, m_sequence, { m_connection, m_selection, owner, time, m_limits } });
}

void X11PasteboardThread::reportResults()
{
    for (auto& entry : m_readings) {
        if (auto content = entry.reading.takeResult())
            m_report({ entry.writesBefore, entry.sequence, true, std::move(*content) });
    }
    for (auto& drop : m_drops) {
        if (const auto content = drop.reading.takeResult())
            drop.done(*content);
    }
    const auto isOver = [](const auto& entry) { return entry.reading.over(); };
    std::erase_if(m_readings, isOver);
    std::erase_if(m_drops, isOver);
}

void X11PasteboardThread::expire()
{
    const auto now = X11PasteboardConnection::Instant::clock::now();
    m_owner->expire(now);
    const auto isDue = [now](const auto& entry) { return now >= entry.reading.deadline(); };
    if (std::none_of(m_readings.begin(), m_readings.end(), isDue)
        && std::none_of(m_drops.begin(), m_drops.end(), isDue))
        return;
    for (auto& entry : m_readings)
        entry.reading.expire(now);
    for (auto& drop : m_drops)
        drop.reading.expire(now);
    reportResults();
}

void X11PasteboardThread::sleep()
{
    auto deadline = m_owner->deadline();
    for (const auto& entry : m_readings)
        deadline = std::min(deadline, entry.reading.deadline());
    for (const auto& drop : m_drops)
        deadline = std::min(deadline, drop.reading.deadline());
    int wait = -1;
    if (deadline != X11PasteboardConnection::Instant::max()) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(
            deadline - X11PasteboardConnection::Instant::clock::now());
        wait = static_cast<int>(std::clamp<qint64>(left.count(), 0, 3'600'000));
    }
    std::array<pollfd, 2> sources { pollfd { xcb_get_file_descriptor(m_connection.get()), POLLIN, 0 },
        pollfd { m_wakeup, POLLIN, 0 } };
    poll(sources.data(), sources.size(), wait);
    quint64 count = 0;
    [[maybe_unused]] const auto emptied = read(m_wakeup, &count, sizeof count);
}

} // namespace nimbarrow

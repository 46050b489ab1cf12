#pragma once

#include "linux/pasteboard/X11PasteboardOwner.h"
#include "linux/pasteboard/X11PasteboardReading.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <list>
#include <mutex>
#include <thread>

namespace nimbarrow {

/// Talks to the X server and, through it, to the programs that copy and paste, away from the main thread.
class X11PasteboardThread {
public:
    /// What another program put on the selection.
    struct Change {
        /// How many of the program's own writes came before it.
        int writesBefore = 0;
        quint64 sequence = 0;
        /// False when the selection only lost its owner.
        bool owned = true;
        PasteboardSnapshot content;
    };

    struct Write {
        QHash<QByteArray, QByteArray> content;
        std::function<QByteArray()> png;
    };

    /// A drag of another program that has ended over a window of ours.
    struct Drag {
        xcb_window_t source = XCB_WINDOW_NONE;
        xcb_timestamp_t time = XCB_CURRENT_TIME;
        /// What is offered; empty when the source has the whole list.
        std::vector<xcb_atom_t> targets;
    };

    /// `report` is called on the thread.
    X11PasteboardThread(
        const QByteArray& display, const X11PasteboardLimits& limits, std::function<void(Change)> report);
    ~X11PasteboardThread();
    Q_DISABLE_COPY_MOVE(X11PasteboardThread)

    [[nodiscard]] bool works() const { return m_works; }

    /// Called on any thread but its own. Returns when whoever pastes from now on gets this; when the X server
    /// is too busy for that, after a quarter of a second.
    void write(Write write);

    /// Called on any thread but its own. `done` is called on this one; at once, and with nothing, where
    /// nothing can be read.
    using DropDone = std::function<void(const PasteboardSnapshot&)>;
    void readDrop(const Drag& drag, DropDone done);

    /// Called on any thread but its own. Returns when the clipboard manager has what was written, when there
    /// is none, and after a second.
    void handOver();

private:
    struct Entry {
        int writesBefore;
        quint64 sequence;
        X11PasteboardReading reading;
    };

    struct Drop {
        DropDone done;
        X11PasteboardReading reading;
    };

    void run();
    void beginDrops();
    void runWrites();
    void claim(const std::deque<Write>& writes);
    void serveHandOver();
    void addImage(const Write& write);
    void handle(const xcb_generic_event_t& event);
    void ownerChanged(xcb_window_t owner, xcb_timestamp_t time, uint32_t sequence);
    void reportResults();
    void expire();
    void sleep();
    void wake() const;

    X11PasteboardConnection m_connection;
    X11PasteboardLimits m_limits;
    std::function<void(Change)> m_report;
    xcb_atom_t m_selection = XCB_ATOM_NONE;
    int m_wakeup = -1;
    std::atomic_bool m_works = false;
    std::atomic_bool m_stop = false;

    std::mutex m_mutex;
    std::condition_variable m_claimed;
    std::condition_variable m_handedOver;
    std::deque<Write> m_writes;
    int m_writesGiven = 0;
    int m_writesClaimed = 0;
    bool m_drawing = false;
    enum class HandOver { None, Wanted, Begun };
    HandOver m_handOver = HandOver::None;
    std::list<std::pair<Drag, DropDone>> m_newDrops;

    std::unique_ptr<X11PasteboardOwner> m_owner;
    std::list<Entry> m_readings;
    std::list<Drop> m_drops;
    int m_claims = 0;
    int m_claimsSeen = 0;
    quint64 m_sequence = 0;

    std::thread m_thread;
};

} // namespace nimbarrow

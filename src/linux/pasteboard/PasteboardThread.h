#pragma once

#include "linux/pasteboard/Selection.h"

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

namespace nimbarrow {

/// Talks to the windowing system and, through it, to the programs that copy and paste, away from the main
/// thread.
class PasteboardThread {
public:
    explicit PasteboardThread(std::unique_ptr<Selection> selection);
    ~PasteboardThread();
    Q_DISABLE_COPY_MOVE(PasteboardThread)

    [[nodiscard]] bool works() const { return m_works; }

    /// Called on any thread but its own. Returns when whoever pastes from now on gets this; when the
    /// windowing system is too busy for that, after a quarter of a second.
    void write(Selection::Write write);

    /// Called on any thread but its own. Runs `work` on this one, between two steps of the selection. False
    /// when nothing runs there.
    bool post(std::function<void()> work);

    /// Called on any thread but its own. Returns when a clipboard manager has what was written, when there is
    /// none, and after a second.
    void handOver();

private:
    void run();
    void runPosted();
    void runWrites();
    void serveHandOver();
    void wake() const;

    std::unique_ptr<Selection> m_selection;
    int m_wakeup = -1;
    std::atomic_bool m_works = false;
    std::atomic_bool m_stop = false;

    std::mutex m_mutex;
    std::condition_variable m_claimed;
    std::condition_variable m_handedOver;
    std::deque<Selection::Write> m_writes;
    int m_writesGiven = 0;
    int m_writesClaimed = 0;
    bool m_drawing = false;
    enum class HandOver { None, Wanted, Begun };
    HandOver m_handOver = HandOver::None;
    std::deque<std::function<void()>> m_posted;

    std::thread m_thread;
};

} // namespace nimbarrow

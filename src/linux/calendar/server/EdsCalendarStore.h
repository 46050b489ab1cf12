#pragma once

#include "platform/Calendars.h"
#include "qt/ThreadedQueue.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>

namespace nimbarrow {

class EdsThread;

/// The calendars of Evolution Data Server, which most desktops keep theirs in. The server is started by the
/// first question and not before; from then on changes are told.
class EdsCalendarStore final : public Calendars {
    Q_OBJECT

public:
    /// How long one call to the server, and all that one question takes, may last before the server counts as
    /// one that does not answer.
    struct Patience {
        std::chrono::milliseconds call { 5000 };
        std::chrono::milliseconds question { 15'000 };
    };

    EdsCalendarStore();
    explicit EdsCalendarStore(Patience patience);
    ~EdsCalendarStore() override;

    [[nodiscard]] std::optional<QList<CalendarEvent>> events(
        const QDateTime& start, const QDateTime& end) override;
    void create(const QString& title, const QDateTime& start, const QDateTime& end,
        std::function<void(const Created&)> done) override;

    /// Whoever waits for an answer gets none at once, and so does everybody from now on. Happens by itself
    /// when the program is about to end.
    void close();

private:
    /// Brings changes from the server's thread to the main one, while there is a store.
    struct Relay {
        std::mutex mutex;
        EdsCalendarStore* store = nullptr;
        std::atomic<bool> isPending = false;
    };

    void tellChanged();

    const Patience m_patience;
    std::shared_ptr<Relay> m_relay;
    std::unique_ptr<EdsThread> m_thread;
    /// Waits where the main thread must not. Last, so that it has ended before what it uses goes.
    ThreadedQueue m_waiting;
};

} // namespace nimbarrow

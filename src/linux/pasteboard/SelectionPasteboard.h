#pragma once

#include "linux/pasteboard/PasteboardThread.h"

#include <deque>
#include <functional>
#include <mutex>
#include <utility>

namespace nimbarrow {

/// The pasteboard as a windowing system's clipboard. Each change is read on a thread of its own before it is
/// announced. Content that was there at the start, and a clipboard whose owner is gone, are empty.
class SelectionPasteboard : public Pasteboard {
    Q_OBJECT

public:
    ~SelectionPasteboard() override;

    [[nodiscard]] Access access() const override { return works() ? Access::Granted : Access::Denied; }
    [[nodiscard]] int changeCount() const override { return m_changeCount; }
    [[nodiscard]] bool announcesChanges() const override { return true; }
    void write(const QList<PasteboardObject>& objects) override;
    void handOver() override { m_thread->handOver(); }

    [[nodiscard]] QStringList types() const override { return m_content->types; }
    [[nodiscard]] QByteArray data(QStringView type) const override { return m_content->data(type); }
    [[nodiscard]] std::optional<QString> string() const override { return m_content->string; }
    [[nodiscard]] QList<QUrl> urls() const override { return m_content->urls; }

    /// False when there is no windowing system to talk to; the pasteboard then stays silent.
    [[nodiscard]] bool works() const { return m_thread->works(); }

protected:
    SelectionPasteboard();

    /// Called on the selection's thread.
    [[nodiscard]] Selection::Report report();
    /// Once, in the constructor.
    void start(std::unique_ptr<Selection> selection);

    using ReadDone = std::function<void(const PasteboardSnapshot&)>;
    /// Runs `read` on the selection's thread; what it gives there goes to `done` on the main loop, unless the
    /// pasteboard is gone by then; at once, and nothing, where nothing can be read.
    void readOnThread(const std::function<void(ReadDone)>& read, ReadDone done);

private:
    using Content = std::shared_ptr<const PasteboardSnapshot>;
    using Age = std::pair<int, quint64>;

    void take(const Selection::Change& change);
    /// Any thread. Runs `work` on the main loop, in the order of the calls, unless the pasteboard is gone by
    /// then.
    void runOnMain(std::function<void()> work);

    int m_changeCount = 0;
    int m_writes = 0;
    Age m_newest { 0, 0 };
    Content m_content;
    /// Handed over under a lock of our own: in Qt's the thread sanitizer sees no order.
    std::mutex m_mutex;
    std::deque<std::function<void()>> m_posted;
    std::unique_ptr<PasteboardThread> m_thread;
};

} // namespace nimbarrow

#pragma once

#include "linux/pasteboard/X11PasteboardThread.h"

#include <memory>
#include <utility>

namespace nimbarrow {

/// The pasteboard as the X server's CLIPBOARD selection. Each change is read on a thread of its own before
/// it is announced. Content that was there at the start, and a selection whose owner is gone, are empty.
class X11Pasteboard final : public Pasteboard {
    Q_OBJECT

public:
    /// An empty display name means the one of the environment.
    explicit X11Pasteboard(const QByteArray& display = {}, const X11PasteboardLimits& limits = {});
    ~X11Pasteboard() override;

    [[nodiscard]] int changeCount() const override { return m_changeCount; }
    [[nodiscard]] bool announcesChanges() const override { return true; }
    void write(const QList<PasteboardObject>& objects) override;
    void handOver() override { m_thread->handOver(); }

    [[nodiscard]] QStringList types() const override { return m_content->types; }
    [[nodiscard]] QByteArray data(QStringView type) const override { return m_content->data(type); }
    [[nodiscard]] std::optional<QString> string() const override { return m_content->string; }
    [[nodiscard]] QList<QUrl> urls() const override { return m_content->urls; }

    /// Reads what was dropped, without waiting for it; `done` runs on the main loop, unless the pasteboard is
    /// gone by then. What does not come is absent.
    void readDrop(const X11PasteboardThread::Drag& drag, std::function<void(const PasteboardSnapshot&)> done);

    /// False when there is no X server to talk to; the pasteboard then stays silent.
    [[nodiscard]] bool works() const { return m_thread->works(); }

private:
    using Content = std::shared_ptr<const PasteboardSnapshot>;
    using Age = std::pair<int, quint64>;

    void take(const X11PasteboardThread::Change& change);

    int m_changeCount = 0;
    int m_writes = 0;
    Age m_newest { 0, 0 };
    Content m_content;
    std::unique_ptr<X11PasteboardThread> m_thread;
};

} // namespace nimbarrow

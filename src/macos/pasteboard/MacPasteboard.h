#pragma once

#include "platform/Pasteboard.h"

#include <memory>

namespace nimbarrow {

class WorkQueue;

/// The general pasteboard. It is read when somebody asks for its content; the system announces no change.
class MacPasteboard final : public Pasteboard {
public:
    MacPasteboard();
    ~MacPasteboard() override;

    [[nodiscard]] Access access() const override;
    [[nodiscard]] int changeCount() const override;
    [[nodiscard]] bool announcesChanges() const override { return false; }
    [[nodiscard]] QStringList types() const override;
    [[nodiscard]] QByteArray data(QStringView type) const override;
    [[nodiscard]] std::optional<QString> string() const override;
    [[nodiscard]] QList<QUrl> urls() const override;
    void write(const QList<PasteboardObject>& objects) override;
    void handOver() override;

private:
    std::unique_ptr<WorkQueue> m_reading;
    /// What `changeCount` was after the last write.
    int m_written = -1;
};

} // namespace nimbarrow

#pragma once

#include "platform/Pasteboard.h"

#include <QObject>
#include <QStringList>

#include <memory>
#include <optional>

namespace nimbarrow {

class ClipboardStore;
class WorkQueue;
class WorkQueues;

/// Decides what an offered content is (files, an image, a text, a link) and adds it to the history.
class PasteboardCapture final : public QObject {
    Q_OBJECT

public:
    /// Both outlive the capture.
    PasteboardCapture(ClipboardStore& store, WorkQueues& queues, QObject* parent = nullptr);
    ~PasteboardCapture() override;

    /// `content` is read before this returns; an image may reach the history later.
    void capture(const PasteboardContent& content, const std::optional<QString>& sourceApp);

    /// Whether there is anything to capture, or the user lets the program read nothing that others copy.
    void setAccess(Pasteboard::Access access);

    /// The types that mark content which is not to be recorded.
    [[nodiscard]] static const QStringList& ignoredTypes();
    /// The types that the notch accepts when they are dropped on it.
    [[nodiscard]] static const QStringList& draggedTypes();

private:
    ClipboardStore& m_store;
    std::unique_ptr<WorkQueue> m_encoding;
};

} // namespace nimbarrow

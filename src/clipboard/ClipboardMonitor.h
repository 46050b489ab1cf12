#pragma once

#include "clipboard/ClipboardItem.h"
#include "platform/Pasteboard.h"
#include "platform/Scheduler.h"

#include <QObject>

namespace nimbarrow {

class Applications;
class ClipboardStore;
class PasteboardCapture;

/// Sees every copy that any program makes, and puts entries of the history back on the pasteboard.
class ClipboardMonitor final : public QObject {
    Q_OBJECT

public:
    /// What is on the pasteboard now is not captured. All references outlive the monitor.
    ClipboardMonitor(PasteboardCapture& capture, Pasteboard& pasteboard, const Applications& applications,
        Scheduler& scheduler, QObject* parent = nullptr);

    /// Follows the pasteboard's own announcements, or looks twice a second where it makes none.
    void start();
    void poll();

    /// Replaces the pasteboard's content by the entry, in every form it has; leaves it alone when the entry
    /// holds nothing.
    void write(const ClipboardItem& item);

private:
    PasteboardCapture& m_capture;
    Pasteboard& m_pasteboard;
    const Applications& m_applications;
    Scheduler& m_scheduler;
    int m_lastChangeCount = 0;
    Timer m_timer;
};

} // namespace nimbarrow

#pragma once

#include "calendar/CalendarModel.h"
#include "calendar/DayTimeline.h"
#include "clipboard/ClipboardMonitor.h"
#include "clipboard/ClipboardStore.h"
#include "clipboard/EntryHandoff.h"
#include "clipboard/PasteboardCapture.h"
#include "clipboard/Paster.h"
#include "clipboard/ScreenshotWatcher.h"
#include "images/ThumbnailLoader.h"
#include "keepawake/KeepAwake.h"
#include "keepawake/OwlMotion.h"
#include "notch/PeekContent.h"
#include "nowplaying/NowPlayingModel.h"
#include "platform/HotKeys.h"
#include "preferences/Settings.h"
#include "settings/About.h"

#include <QObject>
#include <QPointer>

#include <memory>
#include <optional>

namespace nimbarrow {

class NotchController;
struct Platform;

/// Owns every long-lived service, built in one order and linked to the surface in one place.
class AppModel final : public QObject {
    Q_OBJECT

public:
    /// The platform outlives the model.
    explicit AppModel(const Platform& platform, QObject* parent = nullptr);

    /// Links the services to the controller and starts them. The controller may die first.
    void start(NotchController& notch);

    /// Puts everything that is pending on the disk, and waits for it a few seconds at most.
    void save();
    /// Saves, leaves the clipboard's content to whoever keeps it, and lets go of what the system holds for
    /// the program.
    void end();

    [[nodiscard]] About& about() { return m_about; }
    [[nodiscard]] Settings& settings() { return m_settings; }
    [[nodiscard]] NowPlayingModel& player() { return m_player; }
    [[nodiscard]] KeepAwake& keepAwake() { return m_keepAwake; }
    [[nodiscard]] OwlMotion& owl() { return m_owl; }
    [[nodiscard]] CalendarModel& calendar() { return m_calendar; }
    [[nodiscard]] DayTimeline& timeline() { return m_timeline; }
    [[nodiscard]] ClipboardStore& store() { return m_store; }
    [[nodiscard]] ClipboardMonitor& clipboard() { return m_clipboard; }
    [[nodiscard]] PasteboardCapture& capture() { return m_capture; }
    [[nodiscard]] Paster& paster() { return m_paster; }
    [[nodiscard]] EntryHandoff& handoff() { return m_handoff; }
    [[nodiscard]] ThumbnailLoader& thumbnails() { return m_thumbnails; }

private:
    void applyHotKeyEnabled(const QPointer<NotchController>& controller);
    void applyShowCalendar();
    void applyWatchScreenshots();

    Opener& m_opener;
    Pasteboard& m_pasteboard;
    UserDefaults& m_defaults;
    HotKeys& m_hotKeys;
    // The members stand in the order they are built.
    About m_about;
    Settings m_settings;
    NowPlayingModel m_player;
    KeepAwake m_keepAwake;
    OwlMotion m_owl;
    CalendarModel m_calendar;
    DayTimeline m_timeline;
    ThumbnailLoader m_thumbnails;
    ClipboardStore m_store;
    PasteboardCapture m_capture;
    ClipboardMonitor m_clipboard;
    Paster m_paster;
    EntryHandoff m_handoff;
    ScreenshotWatcher m_screenshots;
    /// Command-Shift-V, whichever program is in front; null while it is switched off.
    std::unique_ptr<HotKeys::Registration> m_hotKey;
    /// A notice that waits for the surface to close.
    std::optional<PeekContent> m_notice;
};

} // namespace nimbarrow

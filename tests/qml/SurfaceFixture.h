#pragma once

#include "calendar/CalendarModel.h"
#include "calendar/DayTimeline.h"
#include "clipboard/ClipboardMonitor.h"
#include "clipboard/EntryHandoff.h"
#include "clipboard/PasteboardCapture.h"
#include "clipboard/Paster.h"
#include "images/ThumbnailLoader.h"
#include "keepawake/KeepAwake.h"
#include "keepawake/OwlMotion.h"
#include "notch/HoverTrackingView.h"
#include "notch/NotchActions.h"
#include "notch/NotchShape.h"
#include "notch/NotchState.h"
#include "platform/Capabilities.h"
#include "settings/About.h"
#include "support/FakeCalendarStore.h"
#include "support/FakeDesktop.h"
#include "support/FakePasteboard.h"
#include "support/FakePowerAssertions.h"
#include "support/FakeScripting.h"
#include "support/HistoryFixture.h"
#include "support/PlayerFixture.h"

#include <QQuickItem>
#include <QQuickView>

namespace nimbarrow {

/// The real views over the real history and state, in a window that follows the mode as the panel's does.
class SurfaceFixture {
public:
    /// `notch` is the size of the notch in points.
    explicit SurfaceFixture(QSizeF notch = { 184, 32 });
    ~SurfaceFixture();
    Q_DISABLE_COPY_MOVE(SurfaceFixture)

    HistoryFixture history;
    FakePasteboard pasteboard;
    FakeApplications applications;
    FakeKeystrokes keystrokes;
    PasteboardCapture capture { *history.store, history.queues };
    ClipboardMonitor monitor { capture, pasteboard, applications, history.time };
    Paster paster { monitor, history.settings, history.trust, keystrokes };
    FakeOpener opener;
    FakeSharePicker sharePicker;
    EntryHandoff handoff { *history.store, paster, opener, sharePicker };
    Capabilities capabilities;
    About about { opener, capabilities };
    FakePowerAssertions power;
    KeepAwake keepAwake { power, history.time, history.time };
    FakeCalendarStore calendarStore;
    FakeScripting scripting;
    CalendarModel calendar { calendarStore, opener, scripting, history.time, history.time, history.queues };
    DayTimeline timeline { calendar, history.time, history.time, opener };
    PlayerFixture player;
    OwlMotion owl { history.time, history.time, [] { return 0.5; } };
    ThumbnailLoader thumbnails { history.queues };
    NotchState state;
    NotchActions actions;
    int collapses = 0;
    QQuickView view;

    [[nodiscard]] ClipboardStore& store() const { return *history.store; }
    [[nodiscard]] NotchShape* shape() const;

    /// Gives the window the frame of the mode and then changes the mode.
    void show(NotchState::Mode mode);
    /// Until every animation has come to rest.
    void settle();

    void addText(const QString& text);
    void addImage(const QImage& image);
    /// The player says this of itself; what is not given is that of a usual track.
    void play(const QJsonObject& members = {});
    static constexpr qint32 playerPid = 100;

    /// The first item of a QML type that is to be seen, in the order of drawing; null when there is none.
    [[nodiscard]] QQuickItem* find(const char* type, int which = 0) const;
    [[nodiscard]] QList<QQuickItem*> findAll(const char* type) const;
    /// The button of this name inside `within`, or anywhere.
    [[nodiscard]] static QQuickItem* button(QQuickItem* within, const QString& name);
    [[nodiscard]] QQuickItem* button(const QString& name) const { return button(view.contentItem(), name); }
    /// Whether a text is to be seen somewhere.
    [[nodiscard]] bool shows(const QString& text) const;
    [[nodiscard]] static QPoint middle(const QQuickItem* item) { return placeIn(item, 0.5, 0.5); }
    /// By fractions of the item.
    [[nodiscard]] static QPoint placeIn(const QQuickItem* item, qreal x, qreal y);

    void moveTo(const QPoint& place);
    void click(const QPoint& place);
    void click(const QQuickItem* item) { click(middle(item)); }
    /// With the button down, in small steps.
    void drag(const QPoint& from, const QPoint& to);
    /// In eighths of a degree.
    void wheel(const QPoint& place, int angle);
};

} // namespace nimbarrow

#pragma once

#include "calendar/BlockModel.h"
#include "calendar/CalendarModel.h"
#include "calendar/TimelineLayout.h"
#include "platform/Scheduler.h"

#include <QObject>
#include <QStringList>
#include <QVariantList>
#include <qqmlintegration.h>

namespace nimbarrow {

class Clock;
class Opener;

/// What the timeline shows of the day, in points from midnight, and what can be done there.
class DayTimeline final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(nimbarrow::calendaraccess::CalendarAccess access READ access NOTIFY accessChanged FINAL)
    /// The events in their places, each a `Placement`.
    Q_PROPERTY(nimbarrow::BlockModel* blocks READ blocks CONSTANT FINAL)
    /// Where on the day something happens, each a `Placement`; one of those that would be the same dot.
    Q_PROPERTY(QVariantList marks READ marks NOTIFY eventsChanged FINAL)
    Q_PROPERTY(int rowsUsed READ rowsUsed NOTIFY eventsChanged FINAL)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY eventsChanged FINAL)
    Q_PROPERTY(bool hasAllDay READ hasAllDay NOTIFY eventsChanged FINAL)
    /// The events of the whole day, each a `DayEvent`; no more than anybody would go through.
    Q_PROPERTY(QVariantList allDay READ allDay NOTIFY eventsChanged FINAL)
    /// One name for each hour of the axis.
    Q_PROPERTY(QStringList hours READ hours NOTIFY dayChanged FINAL)
    Q_PROPERTY(double hourWidth READ hourWidth CONSTANT FINAL)
    Q_PROPERTY(double length READ length CONSTANT FINAL)
    /// Where access was refused, asking for it shows where that is decided.
    Q_PROPERTY(bool canShowRefusal READ canShowRefusal CONSTANT FINAL)
    /// Where the present moment is; follows the clock while the timeline is active.
    Q_PROPERTY(double nowX READ nowX NOTIFY nowChanged FINAL)

public:
    /// All references outlive the timeline.
    DayTimeline(CalendarModel& model, const Clock& clock, Scheduler& scheduler, Opener& opener,
        QObject* parent = nullptr);

    [[nodiscard]] CalendarAccess access() const { return m_model.access(); }
    [[nodiscard]] BlockModel* blocks() { return &m_blocks; }
    [[nodiscard]] QVariantList marks() const;
    [[nodiscard]] int rowsUsed() const { return m_layout.rowsUsed; }
    [[nodiscard]] bool isEmpty() const { return m_model.events().isEmpty(); }
    [[nodiscard]] bool hasAllDay() const { return !allDay().isEmpty(); }
    [[nodiscard]] QVariantList allDay() const;
    [[nodiscard]] QStringList hours() const;
    [[nodiscard]] static double hourWidth() { return timelinelayout::hourWidth; }
    [[nodiscard]] static double length() { return timelinelayout::dayWidth; }
    [[nodiscard]] double nowX() const { return m_nowX; }

    /// What part of the day can be seen, in points.
    Q_INVOKABLE void setSight(double x, double width) { m_blocks.setSight(x, width); }
    /// The present moment is followed only while somebody can see it.
    Q_INVOKABLE void setActive(bool active);

    Q_INVOKABLE void open(const nimbarrow::DayEvent& event);
    /// Enters the event's video call.
    Q_INVOKABLE void join(const nimbarrow::DayEvent& event);
    /// Makes an event that starts in the quarter of an hour at this place.
    Q_INVOKABLE void createAt(double x);
    [[nodiscard]] bool canShowRefusal() const;
    /// Asks for access where nobody has decided yet; else shows where that is decided.
    Q_INVOKABLE void requestAccess();

Q_SIGNALS:
    void accessChanged();
    void eventsChanged();
    void dayChanged();
    void nowChanged();

private:
    static constexpr int hoursShown = 24;

    void layOut();
    void followNow();

    CalendarModel& m_model;
    const Clock& m_clock;
    Scheduler& m_scheduler;
    Opener& m_opener;
    timelinelayout::Layout m_layout;
    BlockModel m_blocks;
    double m_nowX = 0;
    Timer m_minute;
};

} // namespace nimbarrow

#pragma once

#include "calendar/DayEvent.h"
#include "platform/Scheduler.h"

#include <QDateTime>
#include <QList>
#include <QObject>
#include <qqmlintegration.h>

#include <functional>
#include <memory>

namespace nimbarrow {

class CalendarStore;
class Clock;
class Opener;
class Scripting;
class WorkQueue;
class WorkQueues;

/// Whether the program may read the user's calendars.
namespace calendaraccess {
Q_NAMESPACE
QML_NAMED_ELEMENT(CalendarAccess)

enum class CalendarAccess { NotDetermined, Granted, Denied };
Q_ENUM_NS(CalendarAccess)
} // namespace calendaraccess

using CalendarAccess = calendaraccess::CalendarAccess;

/// Today's events of the user's calendars, read off the main thread and published when they change.
class CalendarModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(nimbarrow::calendaraccess::CalendarAccess access READ access NOTIFY accessChanged FINAL)

public:
    /// All references outlive the model.
    CalendarModel(CalendarStore& store, Opener& opener, Scripting& scripting, const Clock& clock,
        Scheduler& scheduler, WorkQueues& queues, QObject* parent = nullptr);
    ~CalendarModel() override;

    [[nodiscard]] CalendarAccess access() const { return m_access; }
    /// Midnight at the start of the day that is shown, in local time.
    [[nodiscard]] const QDateTime& dayStart() const { return m_dayStart; }
    /// By start, then by title.
    [[nodiscard]] const QList<DayEvent>& events() const { return m_events; }

    /// Follows the calendars from now on.
    void start();
    void stop();
    /// Reads the day again, when started.
    void refresh();

    /// Asks the user; `answered` runs later on the main thread, also when the model is gone by then.
    void requestAccess(std::function<void()> answered);

    /// Shows the event in the desktop's calendar application.
    void open(const DayEvent& event);
    /// Makes an event of one hour and shows it, to be filled in.
    void createEvent(const QDateTime& start);

Q_SIGNALS:
    void accessChanged();
    void dayStartChanged();
    void eventsChanged();

private:
    void scheduleRefresh();
    void setAccess(CalendarAccess access);
    void publish(const QDateTime& dayStart, const QList<DayEvent>& events);
    [[nodiscard]] QDateTime startOfToday() const;
    void openById(const QString& id);

    CalendarStore& m_store;
    Opener& m_opener;
    Scripting& m_scripting;
    const Clock& m_clock;
    Scheduler& m_scheduler;
    CalendarAccess m_access;
    QDateTime m_dayStart;
    QList<DayEvent> m_events;
    bool m_started = false;
    Timer m_pendingRefresh;
    std::unique_ptr<WorkQueue> m_queue;
};

} // namespace nimbarrow

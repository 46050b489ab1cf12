#pragma once

#include <QColor>
#include <QDateTime>
#include <QList>
#include <QObject>
#include <QString>
#include <QUrl>

#include <functional>
#include <optional>

namespace nimbarrow {

/// One occurrence of an event as the calendar store has it.
struct CalendarEvent {
    enum class Status { None, Confirmed, Tentative, Cancelled };
    enum class Participation { Unknown, Pending, Accepted, Declined, Tentative };

    struct Attendee {
        bool isCurrentUser = false;
        Participation participation = Participation::Unknown;

        friend bool operator==(const Attendee&, const Attendee&) = default;
    };

    /// The store's own identifier, to open the event by; empty where it has none.
    QString identifier;
    QString title;
    /// Both valid. An all-day event begins and ends at local midnights.
    QDateTime start;
    QDateTime end;
    bool isAllDay = false;
    /// The colour of the event's calendar; none where it has none.
    std::optional<QColor> color;
    /// The calendar's name; empty where the store does not tell.
    QString calendar;
    QString location;
    QUrl url;
    /// Where the event says by itself that people meet.
    QList<QUrl> conferences;
    QString notes;
    Status status = Status::None;
    QList<Attendee> attendees;
    bool hasRecurrenceRules = false;
    /// One occurrence of a series that was changed by itself.
    bool isDetached = false;

    friend bool operator==(const CalendarEvent&, const CalendarEvent&) = default;
};

/// What is in some calendars, and new events for them.
class Calendars : public QObject {
    Q_OBJECT

public:
    /// Why a new event was not made.
    enum class CreateError { NoDefaultCalendar, Failed };

    struct Created {
        /// None when the event is in the store.
        std::optional<CreateError> error;
        /// In the store's words, when it failed.
        QString errorDescription;
        /// Of the new event; empty where the store did not tell.
        QString identifier;
    };

    using QObject::QObject;

    /// Every occurrence that overlaps the time from `start` to `end`, over all calendars; none when the store
    /// does not answer, which is not the same as no events. May take long: call it on any thread but the
    /// main.
    [[nodiscard]] virtual std::optional<QList<CalendarEvent>> events(
        const QDateTime& start, const QDateTime& end)
        = 0;

    /// Puts an event into the default calendar, off the main thread. `done` runs on the main thread, later,
    /// unless the store is gone by then.
    virtual void create(const QString& title, const QDateTime& start, const QDateTime& end,
        std::function<void(const Created&)> done)
        = 0;

Q_SIGNALS:
    /// Something in the calendars is another than before.
    void changed();
};

} // namespace nimbarrow

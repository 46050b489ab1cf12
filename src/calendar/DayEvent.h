#pragma once

#include <QColor>
#include <QDateTime>
#include <QList>
#include <QObject>
#include <QString>
#include <QUrl>

#include <optional>

namespace nimbarrow {

struct CalendarEvent;

/// One event of the day that is shown.
struct DayEvent {
    Q_GADGET
    Q_PROPERTY(QString title MEMBER title CONSTANT)
    /// As bright as it must be to be seen on black.
    Q_PROPERTY(QColor color READ visibleColor CONSTANT)
    Q_PROPERTY(bool isMeeting READ hasMeetingUrl CONSTANT)
    /// When and in which calendar, in the user's locale, and where; a line each.
    Q_PROPERTY(QString details READ details CONSTANT)

public:
    /// Of the store; made up where it has none.
    QString id;
    /// As all texts of it, a line that can be shown.
    QString title;
    /// Its calendar's name; empty where it has none.
    QString calendar;
    QDateTime start;
    QDateTime end;
    bool isAllDay = false;
    QColor color;
    std::optional<QString> location;
    /// Where the event's video call is.
    std::optional<QUrl> meetingUrl;
    bool isRecurring = false;

    /// The event must have a start and an end.
    [[nodiscard]] static DayEvent make(const CalendarEvent& event);

    /// The first of the links that leads to a meeting, else the first meeting in the texts, in their order.
    [[nodiscard]] static std::optional<QUrl> meetingUrlIn(
        const QList<QUrl>& links, const QList<std::optional<QString>>& texts);
    /// By its host alone.
    [[nodiscard]] static bool isMeeting(const QUrl& url);
    /// The link that shows an event in the calendar application; none for an identifier that no link can
    /// hold.
    [[nodiscard]] static std::optional<QUrl> calendarUrl(const QString& id);

    /// The order of a day: by start, then by title.
    [[nodiscard]] static bool isBefore(const DayEvent& one, const DayEvent& other);

    friend bool operator==(const DayEvent&, const DayEvent&) = default;

private:
    [[nodiscard]] QColor visibleColor() const;
    [[nodiscard]] bool hasMeetingUrl() const { return meetingUrl.has_value(); }
    [[nodiscard]] QString details() const;
};

} // namespace nimbarrow

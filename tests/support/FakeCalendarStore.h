#pragma once

#include "platform/CalendarStore.h"

namespace nimbarrow {

/// Calendars that hold what the test says.
class FakeCalendarStore final : public CalendarStore {
    Q_OBJECT

public:
    Authorization status = Authorization::FullAccess;
    /// None when the store is down.
    std::optional<QList<CalendarEvent>> held { QList<CalendarEvent>() };
    QList<std::pair<QDateTime, QDateTime>> asked;
    std::function<void(bool granted)> question;
    Created answer { {}, {}, QStringLiteral("new") };
    QList<CalendarEvent> made;

    [[nodiscard]] Authorization authorization() override { return status; }
    void requestFullAccess(std::function<void(bool granted)> answered) override
    {
        question = std::move(answered);
    }

    [[nodiscard]] std::optional<QList<CalendarEvent>> events(
        const QDateTime& start, const QDateTime& end) override
    {
        asked << std::pair(start, end);
        return held;
    }

    void create(const QString& title, const QDateTime& start, const QDateTime& end,
        std::function<void(const Created&)> done) override
    {
        made << event(title, start, end);
        done(answer);
    }

    [[nodiscard]] static CalendarEvent event(
        const QString& title, const QDateTime& start, const QDateTime& end)
    {
        CalendarEvent event;
        event.identifier = title;
        event.title = title;
        event.start = start;
        event.end = end;
        return event;
    }
};

} // namespace nimbarrow

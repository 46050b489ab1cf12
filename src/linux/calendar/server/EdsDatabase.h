#pragma once

#include "linux/calendar/server/EdsPatience.h"
#include "linux/calendar/server/GObjects.h"
#include "platform/Calendars.h"

#include <QHash>
#include <QSet>

#include <functional>
#include <libecal/libecal.h>
#include <memory>
#include <optional>
#include <vector>

namespace nimbarrow {

class EdsCalendar;

/// The data server's calendars. It lives on one thread that has a GLib main context of its own.
class EdsDatabase {
public:
    /// `changed` is called whenever a calendar or an event in one that was read is another.
    explicit EdsDatabase(std::function<void()> changed);
    ~EdsDatabase();
    Q_DISABLE_COPY_MOVE(EdsDatabase)

    /// Over the calendars that the user has switched on; none when the server does not answer. A calendar
    /// that does not answer alone counts as it was.
    [[nodiscard]] std::optional<QList<CalendarEvent>> events(
        const QDateTime& start, const QDateTime& end, EdsPatience& patience);

    [[nodiscard]] Calendars::Created create(
        const QString& title, const QDateTime& start, const QDateTime& end, EdsPatience& patience);

private:
    using Source = Reference<ESource>;

    [[nodiscard]] bool connect(EdsPatience& patience);
    void report(QLatin1StringView what);
    [[nodiscard]] std::vector<Source> sources(const char* extension) const;
    [[nodiscard]] std::vector<Source> shownCalendars() const;
    [[nodiscard]] QSet<QString> ownAddresses() const;
    /// Connected; null when that fails.
    [[nodiscard]] EdsCalendar* calendar(ESource* source, EdsPatience& patience);
    [[nodiscard]] EdsCalendar* calendarForNewEvents(EdsPatience& patience);

    static void sourceChanged(ESourceRegistry* registry, ESource* source, gpointer self);

    std::function<void()> m_changed;
    Reference<GDBusConnection> m_bus;
    Reference<ESourceRegistry> m_registry;
    std::vector<std::unique_ptr<EdsCalendar>> m_calendars;
    /// What each calendar last told of the time asked for last.
    QHash<QString, QList<CalendarEvent>> m_told;
    QDateTime m_toldStart;
    QDateTime m_toldEnd;
    /// Why something failed last, and what was said about failures.
    QString m_failure;
    QSet<QString> m_reported;
};

} // namespace nimbarrow

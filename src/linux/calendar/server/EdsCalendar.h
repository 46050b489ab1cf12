#pragma once

#include "linux/calendar/server/EdsPatience.h"
#include "linux/calendar/server/GObjects.h"
#include "platform/Calendars.h"

#include <QHash>
#include <QSet>

#include <functional>
#include <libecal/libecal.h>
#include <memory>

namespace nimbarrow {

/// One calendar of the data server, connected and watched.
class EdsCalendar {
public:
    /// Null when it cannot be connected, with `failure` set. `changed` is called on the thread's main
    /// context.
    [[nodiscard]] static std::unique_ptr<EdsCalendar> connect(
        ESource* source, const std::function<void()>& changed, EdsPatience& patience, Failure& failure);
    ~EdsCalendar();
    Q_DISABLE_COPY_MOVE(EdsCalendar)

    [[nodiscard]] ESource* source() const { return m_source.get(); }
    /// The server has lost what served it.
    [[nodiscard]] bool isDead() const { return m_isDead; }
    [[nodiscard]] bool isReadOnly() const { return e_client_is_readonly(E_CLIENT(m_client.get())); }

    /// Adds what overlaps the time. False when the calendar does not answer.
    [[nodiscard]] bool addEvents(const QDateTime& start, const QDateTime& end, QSet<QString> ownAddresses,
        EdsPatience& patience, QList<CalendarEvent>& events);

    /// Puts in an event. The new one's uid; empty with `failure` set.
    [[nodiscard]] QString create(const QString& title, const QDateTime& start, const QDateTime& end,
        EdsPatience& patience, Failure& failure);

private:
    EdsCalendar(ESource* source, ECalClient* client, std::function<void()> changed);
    void watch(EdsPatience& patience);
    /// Of each series with changes, when those occurrences would have begun, in seconds since 1970.
    [[nodiscard]] QHash<QByteArray, QSet<qint64>> changesOfSeries(GSList* components, EdsPatience& patience);
    void tellChanged() const { m_changed(); }

    Reference<ESource> m_source;
    Reference<ECalClient> m_client;
    Reference<ECalClientView> m_view;
    std::function<void()> m_changed;
    QString m_ownAddress;
    bool m_isDead = false;
};

} // namespace nimbarrow

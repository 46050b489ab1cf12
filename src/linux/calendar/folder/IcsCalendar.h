#pragma once

#include "linux/calendar/folder/IcsEvent.h"
#include "linux/calendar/folder/IcsZones.h"
#include "platform/CalendarStore.h"

#include <QByteArrayView>
#include <QSet>

#include <vector>

namespace nimbarrow {

/// One calendar out of one or more iCalendar texts, and what happens in it between two moments. The texts may
/// hold anything: time and memory are bounded.
class IcsCalendar {
public:
    /// `ownAddresses` are the user's mail addresses in lower case.
    IcsCalendar(const QDateTime& start, const QDateTime& end, QSet<QString> ownAddresses);

    /// Reads the text of a file. Of what lies outside the time it keeps nothing.
    void add(QByteArrayView text, const QString& path);

    /// From the last text that has one; none where none has.
    [[nodiscard]] const std::optional<QColor>& color() const { return m_color; }

    /// Every occurrence that overlaps the time.
    [[nodiscard]] QList<CalendarEvent> events() const;

    /// A colour as calendars write it: "#FF2968", "#FF2968FF" with the opacity behind, or a name.
    [[nodiscard]] static std::optional<QColor> parseColor(const QByteArray& text);

private:
    struct Series;
    struct Budget;

    void readProperty(const QByteArray& name, const QByteArray& value);
    [[nodiscard]] bool mayMatter(const QByteArray& component) const;
    void expand(
        const IcsEvent& event, const Series& series, Budget& budget, QList<CalendarEvent>& events) const;
    /// `named` is the time that the series has it at.
    void addOccurrence(const IcsEvent& event, const IcsEvent::Span& span, const IcsTime& start,
        const IcsTime& named, QList<CalendarEvent>& events) const;

    const QDateTime m_start;
    const QDateTime m_end;
    QSet<QString> m_ownAddresses;
    std::optional<QColor> m_color;
    IcsZones m_zones;
    std::vector<IcsEvent> m_events;
};

} // namespace nimbarrow

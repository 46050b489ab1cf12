#pragma once

#include "linux/calendar/folder/IcsFile.h"
#include "platform/Calendars.h"

#include <memory>
#include <vector>

namespace nimbarrow {

/// One calendar out of one or more files, and what happens in it between two moments. Time and memory are
/// bounded.
class IcsCalendar {
public:
    IcsCalendar(const QDateTime& start, const QDateTime& end);

    /// Read for the same time.
    void add(std::shared_ptr<const IcsFile> file);

    /// From the first file that has one; none where none has.
    [[nodiscard]] std::optional<QColor> color() const;
    /// Likewise; empty where none has.
    [[nodiscard]] QString name() const;

    /// Every occurrence that overlaps the time.
    [[nodiscard]] QList<CalendarEvent> events() const;

private:
    struct Series;
    struct Budget;

    void expand(
        const IcsEvent& event, const Series& series, Budget& budget, QList<CalendarEvent>& events) const;
    /// `named` is the time that the series has it at.
    void addOccurrence(const IcsEvent& event, const IcsEvent::Span& span, const IcsTime& start,
        const IcsTime& named, QList<CalendarEvent>& events) const;

    const QDateTime m_start;
    const QDateTime m_end;
    std::vector<std::shared_ptr<const IcsFile>> m_files;
    std::size_t m_count = 0;
};

} // namespace nimbarrow

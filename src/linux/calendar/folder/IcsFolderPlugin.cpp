#include "linux/calendar/CalendarStorePlugin.h"
#include "linux/calendar/folder/IcsFolderCalendarStore.h"

#include <QObject>

namespace nimbarrow {

/// Hands the calendars of a folder of iCalendar files to the program.
class IcsFolderPlugin final : public QObject, public CalendarStorePlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID NIMBARROW_CALENDAR_STORE_PLUGIN)
    Q_INTERFACES(nimbarrow::CalendarStorePlugin)

public:
    [[nodiscard]] std::unique_ptr<Calendars> makeStore(const QString& folder) override
    {
        return std::make_unique<IcsFolderCalendarStore>(folder);
    }
};

} // namespace nimbarrow

#include "IcsFolderPlugin.moc"

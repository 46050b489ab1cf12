#include "linux/calendar/CalendarStorePlugin.h"
#include "linux/calendar/server/EdsCalendarStore.h"

#include <QObject>

namespace nimbarrow {

/// Hands the data server's calendars to the program.
class EdsPlugin final : public QObject, public CalendarStorePlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID NIMBARROW_CALENDAR_STORE_PLUGIN)
    Q_INTERFACES(nimbarrow::CalendarStorePlugin)

public:
    [[nodiscard]] std::unique_ptr<Calendars> makeStore(const QString& /*folder*/) override
    {
        return std::make_unique<EdsCalendarStore>();
    }
};

} // namespace nimbarrow

#include "EdsPlugin.moc"

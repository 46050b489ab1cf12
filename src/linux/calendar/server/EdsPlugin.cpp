#include "linux/calendar/server/EdsPlugin.h"

#include "linux/calendar/server/EdsCalendarStore.h"

namespace nimbarrow {

std::unique_ptr<CalendarStore> EdsPlugin::makeStore(const QString& /*folder*/)
{
    return std::make_unique<EdsCalendarStore>();
}

} // namespace nimbarrow

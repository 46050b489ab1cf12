#include "platform/ical/IcsFolderPlugin.h"

#include "platform/ical/IcsFolderCalendarStore.h"

namespace nimbarrow {

std::unique_ptr<CalendarStore> IcsFolderPlugin::makeStore(const QString& folder)
{
    return std::make_unique<IcsFolderCalendarStore>(folder);
}

} // namespace nimbarrow

#include "linux/calendar/folder/IcsFolderPlugin.h"

#include "linux/calendar/folder/IcsFolderCalendarStore.h"

namespace nimbarrow {

std::unique_ptr<CalendarStore> IcsFolderPlugin::makeStore(const QString& folder)
{
    return std::make_unique<IcsFolderCalendarStore>(folder);
}

} // namespace nimbarrow

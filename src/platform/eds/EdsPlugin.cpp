#include "platform/eds/EdsPlugin.h"

#include "platform/eds/EdsCalendarStore.h"

namespace nimbarrow {

std::unique_ptr<CalendarStore> EdsPlugin::makeStore(const QString& /*folder*/)
{
    return std::make_unique<EdsCalendarStore>();
}

} // namespace nimbarrow

#include "macos/session/MacLoginItem.h"

#include "macos/session/BundlePlace.h"

#include <Foundation/Foundation.h>
#include <ServiceManagement/ServiceManagement.h>

namespace nimbarrow {

bool MacLoginItem::isEnabled() const
{
    return SMAppService.mainAppService.status == SMAppServiceStatusEnabled;
}

std::optional<QString> MacLoginItem::setEnabled(bool enabled)
{
    auto* const service = SMAppService.mainAppService;
    NSError* error = nil;
    const bool done
        = enabled ? [service registerAndReturnError:&error] : [service unregisterAndReturnError:&error];
    if (done)
        return {};
    return QString::fromNSString(error.localizedDescription);
}

bool MacLoginItem::runsOutsideApplications() const
{
    return bundleplace::isOutsideApplications(QString::fromNSString(NSBundle.mainBundle.bundlePath));
}

} // namespace nimbarrow

#include "macos/power/MacPowerAssertions.h"

#include "macos/power/AssertionType.h"
#include "macos/session/CfOwner.h"

#include <IOKit/pwr_mgt/IOPMLib.h>
#include <dispatch/dispatch.h>

namespace nimbarrow {

namespace {

class HeldAssertion final : public PowerAssertions::Assertion {
public:
    explicit HeldAssertion(IOPMAssertionID identifier)
        : m_identifier(identifier)
    {
    }

    ~HeldAssertion() override
    {
        // After this turn of the main loop: the one that follows it is there by then, and leaves no gap.
        dispatch_async(
            dispatch_get_main_queue(), [identifier = m_identifier] { IOPMAssertionRelease(identifier); });
    }

private:
    IOPMAssertionID m_identifier;
};

} // namespace

std::unique_ptr<PowerAssertions::Assertion> MacPowerAssertions::create(
    Type type, const QString& name, std::function<void()> /*failed*/)
{
    const CfOwner<CFStringRef> native(assertionType(type).toCFString());
    const CfOwner<CFStringRef> title(name.toCFString());
    IOPMAssertionID identifier = kIOPMNullAssertionID;
    if (IOPMAssertionCreateWithName(native.get(), kIOPMAssertionLevelOn, title.get(), &identifier)
        != kIOReturnSuccess)
        return nullptr;
    return std::make_unique<HeldAssertion>(identifier);
}

} // namespace nimbarrow

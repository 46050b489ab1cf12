#pragma once

#include <libical/ical.h>
#include <memory>

namespace nimbarrow {

struct FreeIcalComponent {
    void operator()(icalcomponent* component) const { icalcomponent_free(component); }
};

/// A component of libical's that is freed with all that is in it.
using IcalComponent = std::unique_ptr<icalcomponent, FreeIcalComponent>;

} // namespace nimbarrow

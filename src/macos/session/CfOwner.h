#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <memory>
#include <type_traits>

namespace nimbarrow {

struct CfRelease {
    void operator()(const void* object) const { CFRelease(object); }
};

/// Owns what a function with "Create" or "Copy" in its name gave; may be null.
template <typename Reference>
using CfOwner = std::unique_ptr<std::remove_pointer_t<Reference>, CfRelease>;

} // namespace nimbarrow

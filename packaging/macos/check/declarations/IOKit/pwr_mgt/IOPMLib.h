#pragma once
#include <CoreFoundation/CoreFoundation.h>
#pragma clang assume_nonnull begin
typedef int IOReturn;
typedef uint32_t IOPMAssertionID;
typedef uint32_t IOPMAssertionLevel;
enum {
    kIOReturnSuccess SINCE(10.0) = 0,
};
enum : uint32_t {
    kIOPMNullAssertionID SINCE(10.5) = 0,
    kIOPMAssertionLevelOn SINCE(10.5) = 255,
};
API IOReturn IOPMAssertionCreateWithName(CFStringRef type, IOPMAssertionLevel level, CFStringRef name, IOPMAssertionID* out) SINCE(10.6);
API IOReturn IOPMAssertionRelease(IOPMAssertionID identifier) SINCE(10.5);
#pragma clang assume_nonnull end

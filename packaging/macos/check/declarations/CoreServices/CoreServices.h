#pragma once
#include <CoreFoundation/CoreFoundation.h>
#pragma clang assume_nonnull begin
typedef struct __MDItem* MDItemRef;
API MDItemRef _Nullable MDItemCreateWithURL(CFAllocatorRef _Nullable allocator, CFURLRef url) SINCE(10.6) __attribute__((cf_returns_retained));
API CFTypeRef _Nullable MDItemCopyAttribute(MDItemRef item, CFStringRef name) SINCE(10.4) __attribute__((cf_returns_retained));
#pragma clang assume_nonnull end

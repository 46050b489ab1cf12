#pragma once
#include <Basics.h>
#pragma clang assume_nonnull begin
typedef const void* CFTypeRef;
typedef unsigned long CFTypeID;
typedef CFTypeRef CFPropertyListRef;
typedef const struct __attribute__((objc_bridge(NSString))) __CFString* CFStringRef;
typedef const struct __attribute__((objc_bridge(NSDictionary))) __CFDictionary* CFDictionaryRef;
typedef const struct __attribute__((objc_bridge(NSURL))) __CFURL* CFURLRef;
typedef const struct __attribute__((objc_bridge(NSNumber))) __CFBoolean* CFBooleanRef;
typedef const struct __CFAllocator* CFAllocatorRef;
#define CFSTR(text) ((CFStringRef)__builtin___CFStringMakeConstantString("" text ""))
API const CFAllocatorRef _Nullable kCFAllocatorDefault SINCE(10.0);
API const CFBooleanRef kCFBooleanTrue SINCE(10.0);
API void CFRelease(CFTypeRef object) SINCE(10.0);
API CFTypeID CFGetTypeID(CFTypeRef object) SINCE(10.0);
API CFTypeID CFStringGetTypeID(void) SINCE(10.0);
API CFTypeID CFBooleanGetTypeID(void) SINCE(10.0);
API Boolean CFBooleanGetValue(CFBooleanRef boolean) SINCE(10.0);
API CFPropertyListRef _Nullable CFPreferencesCopyAppValue(CFStringRef key, CFStringRef application) SINCE(10.0) __attribute__((cf_returns_retained));
#pragma clang assume_nonnull end

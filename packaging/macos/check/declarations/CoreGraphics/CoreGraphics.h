#pragma once
#include <CoreFoundation/CoreFoundation.h>
#pragma clang assume_nonnull begin
typedef struct CGImage* CGImageRef;
typedef struct CGContext* CGContextRef;
typedef struct CGColorSpace* CGColorSpaceRef;
typedef struct __CGEvent* CGEventRef;
typedef struct __CGEventSource* CGEventSourceRef;
typedef uint16_t CGKeyCode;
typedef ENUM(int32_t, CGEventSourceStateID) {
    kCGEventSourceStateCombinedSessionState SINCE(10.4) = 0,
};
typedef ENUM(uint32_t, CGEventTapLocation) {
    kCGHIDEventTap SINCE(10.4) = 0,
};
OPTIONS(uint64_t, CGEventFlags) {
    kCGEventFlagMaskCommand SINCE(10.4) = 0x100000,
};
typedef ENUM(uint32_t, CGImageAlphaInfo) {
    kCGImageAlphaPremultipliedFirst SINCE(10.0) = 2,
};
OPTIONS(uint32_t, CGBitmapInfo) {
    kCGBitmapByteOrder32Little SINCE(10.4) = 2 << 12,
};
API const CFStringRef kCGColorSpaceSRGB SINCE(10.5);
API CFDictionaryRef _Nullable CGSessionCopyCurrentDictionary(void) SINCE(10.3) __attribute__((cf_returns_retained));
API CGEventSourceRef _Nullable CGEventSourceCreate(CGEventSourceStateID state) SINCE(10.4) __attribute__((cf_returns_retained));
API CGEventRef _Nullable CGEventCreateKeyboardEvent(CGEventSourceRef _Nullable source, CGKeyCode key, bool down) SINCE(10.4) __attribute__((cf_returns_retained));
API void CGEventSetFlags(CGEventRef _Nullable event, CGEventFlags flags) SINCE(10.4);
API void CGEventPost(CGEventTapLocation tap, CGEventRef _Nullable event) SINCE(10.4);
API size_t CGImageGetWidth(CGImageRef _Nullable image) SINCE(10.0);
API size_t CGImageGetHeight(CGImageRef _Nullable image) SINCE(10.0);
API CGColorSpaceRef _Nullable CGColorSpaceCreateWithName(CFStringRef _Nullable name) SINCE(10.2) __attribute__((cf_returns_retained));
API void CGColorSpaceRelease(CGColorSpaceRef _Nullable space) SINCE(10.0);
API CGContextRef _Nullable CGBitmapContextCreate(void* _Nullable data, size_t width, size_t height, size_t bits, size_t bytesPerRow, CGColorSpaceRef _Nullable space, uint32_t info) SINCE(10.0) __attribute__((cf_returns_retained));
API void CGContextRelease(CGContextRef _Nullable context) SINCE(10.0);
API void CGContextDrawImage(CGContextRef _Nullable context, CGRect place, CGImageRef _Nullable image) SINCE(10.0);
#pragma clang assume_nonnull end

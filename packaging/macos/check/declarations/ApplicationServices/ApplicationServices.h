#pragma once
#include <CoreGraphics/CoreGraphics.h>
#pragma clang assume_nonnull begin
API Boolean AXIsProcessTrusted(void) SINCE(10.4);
API Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef _Nullable options) SINCE(10.9);
API const CFStringRef kAXTrustedCheckOptionPrompt SINCE(10.9);
#pragma clang assume_nonnull end

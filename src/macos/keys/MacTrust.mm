#include "macos/keys/MacTrust.h"

#include <ApplicationServices/ApplicationServices.h>
#include <Foundation/Foundation.h>

using namespace Qt::StringLiterals;

namespace nimbarrow {

MacTrust::MacTrust()
    : m_listChanged(
        Observation::Centre::Distributed, u"com.apple.accessibility.api"_s, [this] { Q_EMIT changed(); })
{
}

bool MacTrust::isTrusted() const
{
    return AXIsProcessTrusted();
}

void MacTrust::prompt()
{
    auto* const options =
        @ { (__bridge NSString*)kAXTrustedCheckOptionPrompt : (__bridge NSNumber*)kCFBooleanTrue };
    AXIsProcessTrustedWithOptions((__bridge CFDictionaryRef)options);
}

} // namespace nimbarrow

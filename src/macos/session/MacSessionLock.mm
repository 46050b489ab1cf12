#include "macos/session/MacSessionLock.h"

#include "macos/session/CfOwner.h"

#include <CoreGraphics/CoreGraphics.h>
#include <Foundation/Foundation.h>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

constexpr auto programs = Observation::Centre::Distributed;

bool isScreenLockedNow()
{
    const CfOwner<CFDictionaryRef> session(CGSessionCopyCurrentDictionary());
    id locked = ((__bridge NSDictionary*)session.get())[@"CGSSessionScreenIsLocked"];
    return [locked isKindOfClass:NSNumber.class] && ((NSNumber*)locked).boolValue;
}

} // namespace

MacSessionLock::MacSessionLock()
    : m_isScreenLocked(isScreenLockedNow())
    , m_told { Observation { programs, u"com.apple.screenIsLocked"_s,
                   [this] { set(&MacSessionLock::m_isScreenLocked, true); } },
        Observation { programs, u"com.apple.screenIsUnlocked"_s,
            [this] { set(&MacSessionLock::m_isScreenLocked, false); } },
        Observation { programs, u"com.apple.screensaver.didstart"_s,
            [this] { set(&MacSessionLock::m_isSaverRunning, true); } },
        Observation { programs, u"com.apple.screensaver.didstop"_s,
            [this] { set(&MacSessionLock::m_isSaverRunning, false); } } }
{
}

void MacSessionLock::set(bool MacSessionLock::*state, bool value)
{
    const bool was = isLocked();
    this->*state = value;
    if (isLocked() != was)
        Q_EMIT changed();
}

} // namespace nimbarrow

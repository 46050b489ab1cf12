#include "macos/session/MacPreferences.h"

#include <AppKit/AppKit.h>

namespace nimbarrow {

namespace {

bool reduceMotionNow()
{
    return NSWorkspace.sharedWorkspace.accessibilityDisplayShouldReduceMotion;
}

} // namespace

MacPreferences::MacPreferences()
    : m_reduceMotion(reduceMotionNow())
    , m_displayOptions(Observation::Centre::Workspace,
          QString::fromNSString(NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification),
          [this] { readMotion(); })
{
}

void MacPreferences::readMotion()
{
    // The notification tells of contrast and transparency as well.
    if (std::exchange(m_reduceMotion, reduceMotionNow()) != m_reduceMotion)
        Q_EMIT reduceMotionChanged();
}

QStringList MacPreferences::preferredLanguages() const
{
    QStringList languages;
    for (NSString* language in NSLocale.preferredLanguages)
        languages << QString::fromNSString(language);
    return languages;
}

} // namespace nimbarrow

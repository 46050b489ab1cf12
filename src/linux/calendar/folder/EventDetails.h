#pragma once

#include "platform/Calendars.h"

#include <QSet>

#include <libical/ical.h>

namespace nimbarrow {

/// Takes from an event's component what does not depend on when it happens: the texts, the status, who is
/// invited. `ownAddresses` are the user's mail addresses in lower case.
void readDetails(icalcomponent* component, const QSet<QString>& ownAddresses, CalendarEvent& event);

/// The bare mail address in lower case of what names a person in a calendar, such as
/// "mailto:Ada@Example.org".
[[nodiscard]] QString mailAddress(const QString& person);

} // namespace nimbarrow

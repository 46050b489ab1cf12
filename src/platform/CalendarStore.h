#pragma once

#include "platform/Calendars.h"

#include <functional>

namespace nimbarrow {

/// Port: the user's calendars, behind the user's leave.
class CalendarStore : public Calendars {
    Q_OBJECT

public:
    enum class Authorization { NotDetermined, Restricted, Denied, FullAccess, WriteOnly };

    using Calendars::Calendars;

    /// Answers at once, with what is known. What was refused is found out anew in the background then, and
    /// `changed` is told when it no longer is.
    [[nodiscard]] virtual Authorization authorization() = 0;

    /// Asks the user, where the system does. `answered` runs on the main thread, later, also after the store
    /// is gone.
    virtual void requestFullAccess(std::function<void(bool granted)> answered) = 0;

Q_SIGNALS:
    /// Another day has begun: at local midnight, after a change of the time zone or of the clock, or after a
    /// sleep over midnight.
    void dayChanged();
};

} // namespace nimbarrow

#pragma once

#include "platform/Calendars.h"

#include <QtPlugin>

#include <memory>

namespace nimbarrow {

/// What a library with one way to the calendars shows to the program, which loads it when the user has asked
/// for the calendar: these libraries bring more memory with them than all the rest.
class CalendarStorePlugin {
public:
    CalendarStorePlugin() = default;
    virtual ~CalendarStorePlugin() = default;
    Q_DISABLE_COPY_MOVE(CalendarStorePlugin)

    /// `folder` is where a store that keeps files finds them.
    [[nodiscard]] virtual std::unique_ptr<Calendars> makeStore(const QString& folder) = 0;

    /// From the library of this name, wherever the program is installed; null with a logged reason when it
    /// cannot be loaded.
    [[nodiscard]] static std::unique_ptr<Calendars> load(const QString& library, const QString& folder);
};

} // namespace nimbarrow

#define NIMBARROW_CALENDAR_STORE_PLUGIN "ua.tessak.Nimbarrow.CalendarStorePlugin"
Q_DECLARE_INTERFACE(nimbarrow::CalendarStorePlugin, NIMBARROW_CALENDAR_STORE_PLUGIN)

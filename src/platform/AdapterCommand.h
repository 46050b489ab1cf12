#pragma once

#include "platform/Port.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace nimbarrow {

/// A program and what it is started with.
struct ProgramCall {
    /// The absolute path of an executable file.
    QString program;
    QStringList arguments;

    friend bool operator==(const ProgramCall&, const ProgramCall&) = default;
};

/// Port: how the companion program that knows what the system's players play is started.
class AdapterCommand : public Port {
public:
    /// None when a file that it needs is missing. Looks each time.
    [[nodiscard]] virtual std::optional<ProgramCall> find() const = 0;
};

} // namespace nimbarrow

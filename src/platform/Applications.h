#pragma once

#include "platform/Port.h"

#include <QImage>
#include <QString>

#include <optional>

namespace nimbarrow {

/// A program that runs, as the desktop knows it.
struct RunningApplication {
    /// As people read it, in their language.
    QString name;
    /// The desktop's identifier of the program; empty where unknown.
    QString identifier;
    /// The adapter's own handle of what to activate; means nothing elsewhere.
    quint64 handle = 0;

    friend bool operator==(const RunningApplication&, const RunningApplication&) = default;
};

/// Port: the programs of the desktop.
class Applications : public Port {
public:
    /// The program that has the user's attention; none where the desktop does not say.
    [[nodiscard]] virtual std::optional<RunningApplication> frontmost() const = 0;

    /// The program that a process belongs to; none when there is no such process or nothing is known of it.
    [[nodiscard]] virtual std::optional<RunningApplication> withProcess(qint32 pid) const = 0;

    /// The program's icon, at most 128 pixels wide and high; null where it has none.
    [[nodiscard]] virtual QImage icon(const RunningApplication& application) const = 0;

    /// Brings a program to the front; nothing when it is gone.
    virtual void activate(const RunningApplication& application) = 0;
};

} // namespace nimbarrow

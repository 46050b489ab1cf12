#pragma once

#include "platform/AdapterCommand.h"

namespace nimbarrow {

/// The companion program that listens to the players on the session bus: the file `program`.
class LinuxAdapterCommand final : public AdapterCommand {
public:
    explicit LinuxAdapterCommand(const QString& program);

    [[nodiscard]] std::optional<ProgramCall> find() const override;

private:
    QString m_program;
};

} // namespace nimbarrow

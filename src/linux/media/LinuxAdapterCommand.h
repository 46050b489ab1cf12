#pragma once

#include "platform/AdapterCommand.h"

namespace nimbarrow {

/// The companion program that listens to the players on the session bus: it lies beside our own.
class LinuxAdapterCommand final : public AdapterCommand {
public:
    /// `folder` is the one of our own program.
    explicit LinuxAdapterCommand(const QString& folder);

    [[nodiscard]] std::optional<ProgramCall> find() const override;

private:
    QString m_program;
};

} // namespace nimbarrow

#pragma once

#include "platform/AdapterCommand.h"

#include <QFileInfo>

namespace nimbarrow {

/// The companion program that listens to the players on the session bus: the file `program`.
class LinuxAdapterCommand final : public AdapterCommand {
public:
    explicit LinuxAdapterCommand(const QString& program)
        : m_program(program)
    {
    }

    [[nodiscard]] std::optional<ProgramCall> find() const override
    {
        const QFileInfo file(m_program);
        if (!file.isFile() || !file.isExecutable())
            return {};
        return ProgramCall { m_program, {} };
    }

private:
    QString m_program;
};

} // namespace nimbarrow

#include "linux/media/LinuxAdapterCommand.h"

#include <QFileInfo>

namespace nimbarrow {

LinuxAdapterCommand::LinuxAdapterCommand(const QString& program)
    : m_program(program)
{
}

std::optional<ProgramCall> LinuxAdapterCommand::find() const
{
    const QFileInfo file(m_program);
    if (!file.isFile() || !file.isExecutable())
        return {};
    return ProgramCall { m_program, {} };
}

} // namespace nimbarrow

#include "linux/media/LinuxAdapterCommand.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace nimbarrow {

LinuxAdapterCommand::LinuxAdapterCommand(const QString& folder)
    : m_program(folder + "/nimbarrow-media-adapter"_L1)
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

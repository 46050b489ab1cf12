#include "macos/media/MacAdapterCommand.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace nimbarrow {

MacAdapterCommand::MacAdapterCommand(const QString& resources, QString interpreter)
    : m_interpreter(std::move(interpreter))
    , m_script(resources + "/adapter.pl"_L1)
    , m_library(resources + "/libMediaRemoteAdapter.dylib"_L1)
{
}

QString MacAdapterCommand::defaultInterpreter()
{
    return u"/usr/bin/perl"_s;
}

std::optional<ProgramCall> MacAdapterCommand::find() const
{
    const QFileInfo interpreter(m_interpreter);
    const auto isFile = [](const QString& path) { return QFileInfo(path).isFile(); };
    if (!interpreter.isFile() || !interpreter.isExecutable() || !isFile(m_script) || !isFile(m_library))
        return {};
    return ProgramCall { m_interpreter, { m_script, m_library } };
}

} // namespace nimbarrow

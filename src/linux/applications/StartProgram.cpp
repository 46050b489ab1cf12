#include "linux/applications/StartProgram.h"

#include <QDir>
#include <QProcess>
#include <QStandardPaths>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace nimbarrow {

QString installedProgram(const InheritedState& inherited, const QString& name)
{
    const auto folders = inherited.environment.value(u"PATH"_s).split(u':', Qt::SkipEmptyParts);
    return folders.isEmpty() ? QString() : QStandardPaths::findExecutable(name, folders);
}

void prepareProgram(
    QProcess& process, const InheritedState& inherited, const QString& path, const QStringList& arguments)
{
    // The shell counts in blocks of 512 bytes.
    const auto coreSize
        = inherited.coreSize == RLIM_INFINITY ? u"unlimited"_s : QString::number(inherited.coreSize / 512);
    // They are the whole process's: changed here, they would count for the other threads meanwhile.
    process.setProgram(u"/bin/sh"_s);
    process.setArguments(QStringList { u"-c"_s, u"umask \"$0\"; ulimit -S -c \"$1\"; shift; exec \"$@\""_s,
                             QString::number(inherited.umask, 8), coreSize, path }
        + arguments);
    process.setProcessEnvironment(inherited.environment);
    process.setWorkingDirectory(QDir::homePath());
    // What the other program writes is no line of this one's log.
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.setChildProcessModifier([] { ::setsid(); });
}

bool startProgram(const InheritedState& inherited, const QString& path, const QStringList& arguments)
{
    QProcess process;
    prepareProgram(process, inherited, path, arguments);
    return process.startDetached();
}

} // namespace nimbarrow

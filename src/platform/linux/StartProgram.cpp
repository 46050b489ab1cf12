#include "platform/linux/StartProgram.h"

#include <QDir>
#include <QProcess>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace nimbarrow {

QString installedProgram(const InheritedState& inherited, const QString& name)
{
    const auto folders = inherited.environment.value(u"PATH"_s).split(u':', Qt::SkipEmptyParts);
    return folders.isEmpty() ? QString() : QStandardPaths::findExecutable(name, folders);
}

bool startProgram(const InheritedState& inherited, const QString& path, const QStringList& arguments)
{
    QProcess process;
    // The mask is the whole process's: changed here, it would count for what other threads write meanwhile.
    process.setProgram(u"/bin/sh"_s);
    process.setArguments(
        QStringList { u"-c"_s, u"umask \"$0\" && exec \"$@\""_s, QString::number(inherited.umask, 8), path }
        + arguments);
    process.setProcessEnvironment(inherited.environment);
    process.setWorkingDirectory(QDir::homePath());
    // What the other program writes is no line of this one's log.
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    return process.startDetached();
}

} // namespace nimbarrow

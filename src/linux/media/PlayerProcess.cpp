#include "linux/media/PlayerProcess.h"

#include <QByteArray>
#include <QFile>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(65536) : QByteArray();
}

QByteArray name(const QString& root, qint32 pid)
{
    return contents(root + "proc/"_L1 + QString::number(pid) + "/comm"_L1).trimmed();
}

/// The kernel's group that holds this process and, in a desktop session, the rest of its application.
QString group(const QString& root, qint32 pid)
{
    const auto lines = contents(root + "proc/"_L1 + QString::number(pid) + "/cgroup"_L1).split('\n');
    for (const auto& line : lines) {
        if (line.startsWith("0::"))
            return QString::fromUtf8(line.sliced(3));
    }
    return {};
}

} // namespace

qint32 playerProcess(qint32 pid, const QString& root)
{
    if (pid <= 0 || name(root, pid) != "xdg-dbus-proxy")
        return pid;
    const auto path = group(root, pid);
    // Only a group of one application: any other also holds strangers.
    if (!path.section(u'/', -1).startsWith("app-"_L1))
        return pid;
    const auto members = contents(root + "sys/fs/cgroup"_L1 + path + "/cgroup.procs"_L1).split('\n');
    for (const auto& member : members) {
        const auto candidate = member.toInt();
        if (candidate <= 0)
            continue;
        // The sandbox's own processes come first; what they hold is the player and its children.
        const auto program = name(root, candidate);
        if (!program.isEmpty() && program != "xdg-dbus-proxy" && program != "bwrap" && program != "flatpak")
            return candidate;
    }
    return pid;
}

} // namespace nimbarrow

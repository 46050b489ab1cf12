#include "linux/applications/Processes.h"

#include <QByteArray>
#include <QFile>

using namespace Qt::StringLiterals;

namespace nimbarrow::processes {
namespace {

constexpr qint64 longestStatus = 4'096;

// "pid (name) state parent ...", where the name may hold anything, brackets included.
QByteArray status(qint32 pid)
{
    QFile file(u"/proc/%1/stat"_s.arg(pid));
    return pid > 0 && file.open(QIODevice::ReadOnly) ? file.read(longestStatus) : QByteArray();
}

} // namespace

QString name(qint32 pid)
{
    const auto text = status(pid);
    const auto begin = text.indexOf('(') + 1;
    const auto end = text.lastIndexOf(')');
    return begin > 0 && end > begin ? QString::fromUtf8(text.mid(begin, end - begin)) : QString();
}

qint32 parent(qint32 pid)
{
    const auto text = status(pid);
    return text.mid(text.lastIndexOf(')') + 2).split(' ').value(1).toInt();
}

} // namespace nimbarrow::processes

#pragma once

#include <QString>
#include <QtGlobal>

/// What the system tells of running processes.
namespace nimbarrow::processes {

/// The file name of the program, at most 15 bytes of it; empty when there is no such process.
[[nodiscard]] QString name(qint32 pid);

/// The process that started it; 0 when there is none or it is not known.
[[nodiscard]] qint32 parent(qint32 pid);

} // namespace nimbarrow::processes

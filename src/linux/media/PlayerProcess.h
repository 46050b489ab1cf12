#pragma once

#include <QString>

namespace nimbarrow {

/// The process of a player of which the bus knows process `pid`. A sandboxed player stands behind a proxy,
/// and the bus knows the proxy's process only. Reads below `root`; the answer is `pid` itself when no better
/// one is found.
[[nodiscard]] qint32 playerProcess(qint32 pid, const QString& root = QStringLiteral("/"));

} // namespace nimbarrow

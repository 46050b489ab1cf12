#pragma once

#include <QImage>
#include <QString>

#include <optional>

namespace nimbarrow {

class Applications;

/// The program that plays.
struct NowPlayingApp {
    qint32 pid = 0;
    /// As the desktop identifies the program.
    std::optional<QString> bundleID;
    QString name;
    /// Null when there is none.
    QImage icon;

    /// What the desktop knows of a process; where it knows nothing, the word for any player.
    [[nodiscard]] static NowPlayingApp running(qint32 pid, const Applications& applications);

    friend bool operator==(const NowPlayingApp& a, const NowPlayingApp& b) { return a.pid == b.pid; }
};

} // namespace nimbarrow

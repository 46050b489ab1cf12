#pragma once

#include <QSet>
#include <QString>

#include <sys/types.h>

namespace nimbarrow {

/// This process again, as one that copies, removes and saves on real threads until it is killed.
class BusyCopy {
public:
    /// What all copies together have said that they have on disk, and have removed from it.
    struct Recorded {
        /// By content, with those that were added or removed and not saved before the kill.
        QSet<QString> saved;
        QSet<QString> gone;
        QSet<QString> uncertain;
        int added = 0;
        int removed = 0;

        /// What is wrong with the history in the folder; empty when nothing is.
        [[nodiscard]] QString compare(const QString& home);
    };

    BusyCopy(const QString& home, quint32 seed);
    ~BusyCopy();
    Q_DISABLE_COPY_MOVE(BusyCopy)

    void killHard(Recorded& recorded);

private:
    pid_t m_process = -1;
    int m_pipe = -1;
};

} // namespace nimbarrow

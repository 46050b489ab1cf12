#pragma once

#include "linux/calendar/folder/IcsFile.h"

#include <QFileInfo>
#include <QHash>

#include <memory>

namespace nimbarrow {

/// Keeps what files say for the next time they are asked, as long as they are as they were and not too much
/// together. One thread at a time.
class IcsFileCache {
public:
    using File = std::shared_ptr<const IcsFile>;

    /// A new round through the files. What was read another way counts no more.
    void begin(const IcsFile::Reading& reading);
    /// Null for a file that has to be read.
    [[nodiscard]] File find(const QFileInfo& info);
    /// `info` is from before the reading.
    void keep(const QFileInfo& info, const File& file);
    /// Forgets the files that this round did not come by.
    void end();

private:
    struct Entry {
        qint64 size = 0;
        qint64 modified = 0; // ms
        int round = 0;
        File file;
    };

    IcsFile::Reading m_reading;
    QHash<QString, Entry> m_entries;
    qsizetype m_cost = 0;
    int m_round = 0;
};

} // namespace nimbarrow

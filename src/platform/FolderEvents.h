#pragma once

#include "platform/Port.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace nimbarrow {

/// Port: tells when the entries of a folder change.
class FolderEvents : public Port {
public:
    /// Ends when it is dropped, also from inside its own `changed`.
    class Watch : public Port {
    public:
        /// The names of new files that are being written now, as far as the watch has seen it.
        [[nodiscard]] virtual QStringList unfinished() const = 0;

        /// False when what has the folder's name now is another one, or nothing.
        [[nodiscard]] virtual bool isCurrent() const { return true; }
    };

    /// `changed` runs on the main loop after an entry was written to its end, came, went or got another name,
    /// and after the folder itself did. The watch stays with the folder wherever it is moved to. Null for
    /// what is no folder or cannot be watched.
    [[nodiscard]] virtual std::unique_ptr<Watch> watch(const QString& folder, std::function<void()> changed)
        = 0;
};

} // namespace nimbarrow

#pragma once

#include "linux/pasteboard/PasteboardLimits.h"
#include "linux/pasteboard/PasteboardSnapshot.h"

#include <deque>
#include <functional>

namespace nimbarrow {

/// One windowing system's clipboard. Made on any thread, then used on the pasteboard's alone.
class Selection {
public:
    /// What another program has copied.
    struct Change {
        /// How many of the program's own writes came before it.
        int writesBefore = 0;
        quint64 sequence = 0;
        /// False when the clipboard only lost its owner.
        bool owned = true;
        PasteboardSnapshot content;
    };
    using Report = std::function<void(Change)>;

    struct Write {
        QHash<QByteArray, QByteArray> content;
        std::function<QByteArray()> png;
    };

    virtual ~Selection() = default;
    Q_DISABLE_COPY_MOVE(Selection)

    /// False when there is no windowing system to talk to, and after it was lost.
    [[nodiscard]] virtual bool works() const = 0;

    /// Becomes the owner of each of these in turn; whoever pastes after this returns gets the last.
    virtual void claim(const std::deque<Write>& writes) = 0;
    /// The image of the last write.
    virtual void addImage(const QByteArray& png) = 0;

    /// Asks whoever keeps the content of programs that end to take over ours.
    virtual void save() = 0;
    /// Until that is done, and everybody has what is on its way.
    [[nodiscard]] virtual bool isGiving() const = 0;

    /// Does what is due and what has come; when that is nothing, waits, until there is something or the file
    /// `wakeup` can be read.
    virtual void step(int wakeup) = 0;

protected:
    Selection() = default;

    /// For poll(), in milliseconds.
    [[nodiscard]] static int waitUntil(PasteboardInstant deadline);
};

} // namespace nimbarrow

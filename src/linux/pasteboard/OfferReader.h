#pragma once

#include "linux/pasteboard/PasteboardLimits.h"
#include "linux/pasteboard/PasteboardSnapshot.h"

namespace nimbarrow {

/// Decides what an offer is and reads no more of it than that: the files; else the text, unless it is no more
/// than the address of an image that is offered with it; else the best image; else a link.
/// Nothing is read of an offer that its owner marked as not to be recorded.
class OfferReader {
public:
    explicit OfferReader(const QStringList& targets);

    /// The target to read now; empty when all that is needed has been read.
    [[nodiscard]] QString next() const { return m_wanted.isEmpty() ? QString() : m_wanted.first(); }

    /// How many bytes of `next()` are worth reading.
    [[nodiscard]] qsizetype room(const PasteboardLimits& limits) const;

    /// The bytes of `next()`, empty when the owner did not give them. Moves on to the next target. When they
    /// are `cut` there were more than anybody wants to hold.
    void take(const QByteArray& bytes, bool cut = false);

    [[nodiscard]] const PasteboardSnapshot& snapshot() const { return m_snapshot; }

private:
    void takeText(const QString& text);
    void takeUrls(const QString& target, const QByteArray& bytes);

    QStringList m_wanted;
    PasteboardSnapshot m_snapshot;
};

} // namespace nimbarrow

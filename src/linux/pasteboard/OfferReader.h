#pragma once

#include "linux/pasteboard/PasteboardSnapshot.h"

namespace nimbarrow {

/// Decides which forms of an offer are read: the files; else the best image; else the text; else a link.
/// Nothing is read of an offer that its owner marked as not to be recorded.
class OfferReader {
public:
    explicit OfferReader(const QStringList& targets);

    /// The target to read now; empty when all that is needed has been read.
    [[nodiscard]] QString next() const { return m_wanted.isEmpty() ? QString() : m_wanted.first(); }

    /// The bytes of `next()`, empty when the owner did not give them. Moves on to the next target.
    void take(const QByteArray& bytes);

    [[nodiscard]] const PasteboardSnapshot& snapshot() const { return m_snapshot; }

private:
    void takeUrls(const QString& target, const QByteArray& bytes);

    QStringList m_wanted;
    PasteboardSnapshot m_snapshot;
};

} // namespace nimbarrow

#pragma once

#include "linux/pasteboard/PasteboardSnapshot.h"

#include <functional>

namespace nimbarrow {

/// The objects of one write, merged into what other programs may ask for.
class PasteboardOffer {
public:
    explicit PasteboardOffer(const QList<PasteboardObject>& objects);

    /// The bytes of every target but the image.
    [[nodiscard]] const QHash<QByteArray, QByteArray>& content() const { return m_content; }

    /// Gives the image; empty when no object has one.
    [[nodiscard]] const std::function<QByteArray()>& png() const { return m_png; }

    /// What the program itself sees of it; the image is not in it.
    [[nodiscard]] const PasteboardSnapshot& snapshot() const { return m_snapshot; }

private:
    void offerUrls();
    void offerText();

    QHash<QByteArray, QByteArray> m_content;
    std::function<QByteArray()> m_png;
    PasteboardSnapshot m_snapshot;
};

} // namespace nimbarrow

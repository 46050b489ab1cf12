#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QByteArrayView>

namespace nimbarrow {

/// Cuts a stream of bytes into lines. A line that is longer than it may be is dropped while it comes, so that
/// the stream cannot fill the memory.
class LineCutter {
public:
    /// In bytes, without the line feed.
    explicit LineCutter(qsizetype longest)
        : m_longest(longest)
    {
    }

    /// The lines that these bytes complete, without their line feeds.
    [[nodiscard]] QByteArrayList add(QByteArrayView bytes);

    /// How many bytes of an unfinished line are kept.
    [[nodiscard]] qsizetype kept() const { return m_begun.size(); }

    /// Whether any line so far was too long.
    [[nodiscard]] bool hasDropped() const { return m_hasDropped; }

private:
    void begin(QByteArrayView part);

    qsizetype m_longest;
    QByteArray m_begun;
    bool m_isTooLong = false;
    bool m_hasDropped = false;
};

} // namespace nimbarrow

#pragma once

#include <QByteArray>
#include <QByteArrayList>

namespace nimbarrow {

/// Cuts a stream of bytes into lines. A line that is longer than any message is dropped while it comes, so
/// that the stream cannot fill the memory.
class AdapterLines {
public:
    /// In bytes. The largest messages are pictures in base 64.
    static constexpr qsizetype longest = qsizetype { 16 } * 1024 * 1024;

    /// The lines that these bytes complete, without their line feeds.
    [[nodiscard]] QByteArrayList add(const QByteArray& bytes);

    /// How many bytes of an unfinished line are kept.
    [[nodiscard]] qsizetype kept() const { return m_begun.size(); }

private:
    void begin(QByteArrayView part);

    QByteArray m_begun;
    bool m_isTooLong = false;
};

} // namespace nimbarrow

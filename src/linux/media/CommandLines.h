#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>

namespace nimbarrow {

/// Cuts what comes through the input pipe into lines. A line too long for any command is dropped whole, so
/// the buffer stays small.
class CommandLines {
public:
    /// Bytes.
    static constexpr qsizetype longest = 1024;

    /// The lines that these bytes complete, without their line feeds.
    [[nodiscard]] QList<QByteArray> take(QByteArrayView bytes);

private:
    QByteArray m_rest;
    bool m_dropping = false;
};

} // namespace nimbarrow

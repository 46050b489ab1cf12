#include "nowplaying/AdapterLines.h"

#include <utility>

namespace nimbarrow {

QByteArrayList AdapterLines::add(const QByteArray& bytes)
{
    QByteArrayList lines;
    qsizetype from = 0;
    for (auto feed = bytes.indexOf('\n'); feed >= 0; feed = bytes.indexOf('\n', from)) {
        begin(QByteArrayView(bytes).sliced(from, feed - from));
        if (!std::exchange(m_isTooLong, false))
            lines << std::exchange(m_begun, {});
        from = feed + 1;
    }
    begin(QByteArrayView(bytes).sliced(from));
    return lines;
}

void AdapterLines::begin(QByteArrayView part)
{
    m_isTooLong = m_isTooLong || m_begun.size() + part.size() > longest;
    if (m_isTooLong)
        m_begun = {};
    else
        m_begun.append(part);
}

} // namespace nimbarrow

#include "mediaprotocol/LineCutter.h"

#include <utility>

namespace nimbarrow {

QByteArrayList LineCutter::add(QByteArrayView bytes)
{
    QByteArrayList lines;
    for (auto feed = bytes.indexOf('\n'); feed >= 0; feed = bytes.indexOf('\n')) {
        begin(bytes.first(feed));
        if (!std::exchange(m_isTooLong, false))
            lines << std::exchange(m_begun, {});
        bytes = bytes.sliced(feed + 1);
    }
    begin(bytes);
    return lines;
}

void LineCutter::begin(QByteArrayView part)
{
    m_isTooLong = m_isTooLong || m_begun.size() + part.size() > m_longest;
    m_hasDropped = m_hasDropped || m_isTooLong;
    if (m_isTooLong)
        m_begun = {};
    else
        m_begun.append(part);
}

} // namespace nimbarrow

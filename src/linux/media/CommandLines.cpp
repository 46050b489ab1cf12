#include "linux/media/CommandLines.h"

namespace nimbarrow {

QList<QByteArray> CommandLines::take(QByteArrayView bytes)
{
    QList<QByteArray> lines;
    while (!bytes.isEmpty()) {
        const auto end = bytes.indexOf('\n');
        const auto part = end < 0 ? bytes : bytes.first(end);
        if (m_rest.size() + part.size() > longest) {
            m_dropping = true;
            m_rest.clear();
        }
        if (!m_dropping)
            m_rest += part;
        if (end < 0)
            break;
        if (!m_dropping)
            lines += m_rest;
        m_rest.clear();
        m_dropping = false;
        bytes = bytes.sliced(end + 1);
    }
    return lines;
}

} // namespace nimbarrow

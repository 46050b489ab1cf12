#include "files/KeyFile.h"

namespace nimbarrow {

KeyFile::KeyFile(const QByteArray& text)
{
    m_lines = text.split('\n');
    // What follows the last line's end is no line.
    if (m_lines.constLast().isEmpty())
        m_lines.removeLast();
    QByteArray group;
    for (qsizetype number = 0; number < m_lines.size(); ++number) {
        const auto line = m_lines[number].trimmed();
        if (line.startsWith('[') && line.endsWith(']'))
            group = line.mid(1, line.size() - 2);
        else if (const auto equals = line.indexOf('=');
                 equals > 0 && !line.startsWith('#') && !line.startsWith(';'))
            m_places.insert({ group, line.left(equals).trimmed() }, number);
    }
}

QByteArray KeyFile::value(const QByteArray& group, const QByteArray& key) const
{
    const auto place = m_places.constFind({ group, key });
    if (place == m_places.cend())
        return {};
    const auto& line = m_lines[*place];
    const auto value = line.mid(line.indexOf('=') + 1).trimmed();
    return value.isNull() ? QByteArray("") : value;
}

void KeyFile::setValue(const QByteArray& group, const QByteArray& key, const QByteArray& value)
{
    const auto line = key + '=' + value;
    if (const auto place = m_places.constFind({ group, key }); place != m_places.cend()) {
        m_lines[*place] = line;
        return;
    }
    const auto header = '[' + group + ']';
    qsizetype place = 0;
    while (place < m_lines.size() && m_lines[place].trimmed() != header)
        ++place;
    if (place == m_lines.size())
        m_lines << header;
    // Behind what the group has, before the empty lines that part it from the next.
    auto end = ++place;
    while (end < m_lines.size() && !m_lines[end].trimmed().startsWith('['))
        ++end;
    while (end > place && m_lines[end - 1].trimmed().isEmpty())
        --end;
    m_lines.insert(end, line);
    *this = KeyFile(text());
}

QByteArray KeyFile::text() const
{
    return m_lines.isEmpty() ? QByteArray() : m_lines.join('\n') + '\n';
}

} // namespace nimbarrow

#include "linux/calendar/folder/IcsScanner.h"

#include <algorithm>

namespace nimbarrow {

namespace {

constexpr qsizetype largestLine = 65'536;
constexpr qsizetype largestComponent = 262'144;

/// One line after the other, unfolded.
class Lines {
public:
    explicit Lines(QByteArrayView text)
        : m_text(text)
    {
    }

    [[nodiscard]] bool next(QByteArray& line)
    {
        if (m_at >= m_text.size())
            return false;
        line = physical().toByteArray();
        while (m_at < m_text.size() && (m_text[m_at] == ' ' || m_text[m_at] == '\t')) {
            const auto more = physical().sliced(1);
            line += more.first(std::clamp<qsizetype>(largestLine - line.size(), 0, more.size()));
        }
        // The parser would take it for the end of the line, and what follows for a line of its own.
        line.replace('\r', ' ');
        return true;
    }

private:
    QByteArrayView physical()
    {
        auto end = m_text.indexOf('\n', m_at);
        if (end < 0)
            end = m_text.size();
        auto line = m_text.sliced(m_at, end - m_at);
        m_at = std::min(end + 1, m_text.size());
        while (line.endsWith('\r'))
            line.chop(1);
        return line.first(std::min(line.size(), largestLine));
    }

    QByteArrayView m_text;
    qsizetype m_at = 0;
};

QByteArray nameOf(const QByteArray& line)
{
    const auto end = std::find_if(line.begin(), line.end(), [](char c) { return c == ':' || c == ';'; });
    return line.left(end - line.begin()).trimmed().toUpper();
}

/// What stands behind the first colon that is not in quotes.
QByteArray valueOf(const QByteArray& line)
{
    bool isQuoted = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        if (line[i] == '"')
            isQuoted = !isQuoted;
        else if (line[i] == ':' && !isQuoted)
            return line.mid(i + 1);
    }
    return {};
}

} // namespace

void IcsScanner::scan(QByteArrayView text) const
{
    Lines lines(text);
    QByteArray line;
    QByteArray component;
    QByteArray kind;
    int depth = 0; // in the component
    while (lines.next(line)) {
        const auto name = nameOf(line);
        const bool begins = name == "BEGIN";
        const bool ends = name == "END";
        const auto what = begins || ends ? valueOf(line).trimmed().toUpper() : QByteArray();
        if (kind.isEmpty()) {
            if (begins
                && (what == "VEVENT" || what == "VTIMEZONE" || what == "VTODO" || what == "VJOURNAL")) {
                kind = what;
                depth = 1;
                component = "BEGIN:" + kind + "\r\n";
            } else if (!begins && !ends && !line.isEmpty()) {
                property(name, valueOf(line));
            }
            continue;
        }
        // A second beginning of the same kind: the first one has lost its end.
        if (begins && what == kind) {
            depth = 1;
            component = "BEGIN:" + kind + "\r\n";
            continue;
        }
        depth += begins ? 1 : ends ? -1 : 0;
        if (ends && (depth == 0 || what == kind)) {
            component += "END:" + kind + "\r\n";
            if (kind == "VEVENT")
                event(component);
            else if (kind == "VTIMEZONE")
                zone(component);
            kind.clear();
            continue;
        }
        const bool isWanted = kind == "VTIMEZONE" ? depth <= 2 : depth == 1 && !ends && name != "ATTACH";
        if (isWanted && component.size() + line.size() < largestComponent)
            component += line + "\r\n";
    }
}

} // namespace nimbarrow

#include "mediaprotocol/PlainLine.h"

#include <algorithm>

namespace nimbarrow {

namespace {

constexpr qsizetype longest = 500;
/// More than any script needs over or under one letter.
constexpr int mostMarks = 4;

enum class Kind { Visible, Mark, Invisible, Breaking };

Kind kindOf(char32_t code)
{
    // Letters by their category, and yet nothing to see: fillers and the empty braille cell.
    if (code == 0x115f || code == 0x1160 || code == 0x2800 || code == 0x3164 || code == 0xffa0)
        return Kind::Invisible;
    const bool turns = (code >= 0x202a && code <= 0x202e) || (code >= 0x2066 && code <= 0x2069);
    switch (QChar::category(code)) {
    case QChar::Other_Control:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
    case QChar::Other_Surrogate: return Kind::Breaking;
    case QChar::Other_Format: return turns ? Kind::Breaking : Kind::Invisible;
    case QChar::Separator_Space: return Kind::Invisible;
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing: return Kind::Mark;
    default: return Kind::Visible;
    }
}

} // namespace

QString plainLine(QStringView text)
{
    QString line;
    bool hasVisible = false;
    int marks = 0;
    text = text.first(std::min(text.size(), longest));
    // The cut may have halved the last character, which is worth nothing then.
    if (!text.isEmpty() && text.back().isHighSurrogate())
        text.chop(1);
    for (qsizetype at = 0; at < text.size();) {
        const bool isPair
            = at + 1 < text.size() && text[at].isHighSurrogate() && text[at + 1].isLowSurrogate();
        const auto units = text.sliced(at, isPair ? 2 : 1);
        at += units.size();
        const auto kind
            = kindOf(isPair ? QChar::surrogateToUcs4(units[0], units[1]) : char32_t(units[0].unicode()));
        // Marks do not count on with what one cannot see between them.
        if (kind == Kind::Mark)
            ++marks;
        else if (kind != Kind::Invisible || units[0].isSpace())
            marks = 0;
        hasVisible = hasVisible || kind == Kind::Visible;
        if (kind == Kind::Breaking)
            line += u' ';
        // A byte order mark inside a text means nothing, and readers drop it at the beginning of one.
        else if (marks <= mostMarks && units[0] != QChar::ByteOrderMark)
            line += units;
    }
    return hasVisible ? line.simplified() : QString();
}

} // namespace nimbarrow

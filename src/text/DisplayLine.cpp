#include "text/DisplayLine.h"

#include <algorithm>
#include <array>

namespace nimbarrow {

namespace {

// No script that is written needs more on one letter; beyond it they only paint over other lines.
constexpr int mostMarks = 4;

/// Letters and symbols by their category, but nothing is drawn for them.
constexpr std::array<char32_t, 5> blanks { 0x115F, 0x1160, 0x2800, 0x3164, 0xFFA0 };

/// What would begin another line, do what no text should, change the direction of what follows, or is half a
/// character.
bool isControl(char32_t character)
{
    const bool turns
        = (character >= 0x202A && character <= 0x202E) || (character >= 0x2066 && character <= 0x2069);
    const auto category = QChar::category(character);
    return turns || category == QChar::Other_Control || category == QChar::Other_Surrogate
        || category == QChar::Separator_Line || category == QChar::Separator_Paragraph;
}

bool isMark(char32_t character)
{
    const auto category = QChar::category(character);
    return category == QChar::Mark_NonSpacing || category == QChar::Mark_Enclosing;
}

bool isVisible(char32_t character)
{
    const auto category = QChar::category(character);
    return category != QChar::Other_Format && category != QChar::Separator_Space && !isMark(character)
        && std::ranges::find(blanks, character) == blanks.end();
}

} // namespace

QString displayLine(QStringView text, qsizetype longest)
{
    QString line;
    bool visible = false;
    int marks = 0;
    // Behind this much that is left out, nobody looks for more.
    text = text.left(4 * longest);
    for (qsizetype place = 0; place < text.size();) {
        char32_t character = text[place++].unicode();
        if (QChar::isHighSurrogate(character) && place < text.size() && text[place].isLowSurrogate())
            character = QChar::surrogateToUcs4(static_cast<char16_t>(character), text[place++].unicode());
        // Inside a text it means nothing, and readers drop it at the beginning of one.
        if (character == QChar::ByteOrderMark)
            continue;
        if (isControl(character))
            character = U' ';
        if (isVisible(character)) {
            visible = true;
            marks = 0;
        } else if (isMark(character) && ++marks > mostMarks) {
            continue;
        }
        if (line.size() + (QChar::requiresSurrogates(character) ? 2 : 1) > longest)
            break;
        line += QChar::fromUcs4(character);
    }
    return visible ? line.trimmed() : QString();
}

} // namespace nimbarrow

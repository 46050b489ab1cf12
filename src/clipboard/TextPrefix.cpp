#include "clipboard/TextPrefix.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace nimbarrow {

QString firstCharacters(const QString& text, qsizetype count)
{
    if (text.size() <= count)
        return text;
    // The finder examines all that it is given, so it gets a little more each time.
    const auto longest = std::min(text.size(), maxStoredLength);
    for (auto window = std::min(2 * count, longest);; window = std::min(2 * window, longest)) {
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text.constData(), window);
        qsizetype end = 0;
        for (qsizetype found = 0; found < count && end >= 0 && end < window; ++found)
            end = finder.toNextBoundary();
        // What follows a boundary makes it one, and at the window's end nothing follows.
        if (end >= 0 && end < window - 1)
            return text.left(end);
        if (window < longest)
            continue;
        if (longest == text.size())
            return end >= 0 ? text.left(end) : text;
        return text.left(text.at(longest - 1).isHighSurrogate() ? longest - 1 : longest);
    }
}

} // namespace nimbarrow

#include "macos/media/ScriptAnswer.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace nimbarrow::scriptanswer {

namespace {

constexpr quint32 code(const char (&text)[5])
{
    quint32 result = 0;
    for (int place = 0; place < 4; ++place)
        result = result << 8U | static_cast<unsigned char>(text[place]);
    return result;
}

struct Entry {
    quint32 type;
    Kind kind;
};

constexpr std::array known {
    Entry { code("list"), Kind::List },
    Entry { code("utxt"), Kind::Text },
    Entry { code("utf8"), Kind::Text },
    Entry { code("ut16"), Kind::Text },
    Entry { code("TEXT"), Kind::Text },
    Entry { code("long"), Kind::Integer },
    Entry { code("shor"), Kind::Integer },
    Entry { code("comp"), Kind::Integer },
    Entry { code("magn"), Kind::Integer },
    Entry { code("doub"), Kind::Real },
    Entry { code("sing"), Kind::Real },
    Entry { code("true"), Kind::Truth },
    Entry { code("fals"), Kind::Truth },
    Entry { code("bool"), Kind::Truth },
    Entry { code("null"), Kind::Nothing },
    // The name of a kind of thing stands for "missing value".
    Entry { code("type"), Kind::Nothing },
};

/// The user has not allowed this program to drive the other one.
constexpr qint64 notPermitted = -1743;

} // namespace

Kind kindOf(quint32 descriptorType)
{
    const auto* const entry = std::ranges::find(known, descriptorType, &Entry::type);
    // A picture's descriptor has the type of its format.
    return entry == known.end() ? Kind::Bytes : entry->kind;
}

ScriptResult::Error error(std::optional<qint64> number, const QString& words)
{
    if (!words.isEmpty())
        return { number == notPermitted, words };
    return { number == notPermitted, number ? u"error %1"_s.arg(*number) : u"the script gave no reason"_s };
}

} // namespace nimbarrow::scriptanswer

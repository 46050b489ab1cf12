#include "macos/media/ScriptAnswer.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace nimbarrow::scriptanswer {

namespace {

constexpr quint32 code(QLatin1StringView text)
{
    quint32 result = 0;
    for (int place = 0; place < 4; ++place)
        result = result << 8U | static_cast<unsigned char>(text.data()[place]);
    return result;
}

struct Entry {
    quint32 type;
    Kind kind;
};

constexpr std::array known {
    Entry { code("list"_L1), Kind::List },
    Entry { code("utxt"_L1), Kind::Text },
    Entry { code("utf8"_L1), Kind::Text },
    Entry { code("ut16"_L1), Kind::Text },
    Entry { code("TEXT"_L1), Kind::Text },
    Entry { code("long"_L1), Kind::Integer },
    Entry { code("shor"_L1), Kind::Integer },
    Entry { code("comp"_L1), Kind::Integer },
    Entry { code("magn"_L1), Kind::Integer },
    Entry { code("doub"_L1), Kind::Real },
    Entry { code("sing"_L1), Kind::Real },
    Entry { code("true"_L1), Kind::Truth },
    Entry { code("fals"_L1), Kind::Truth },
    Entry { code("bool"_L1), Kind::Truth },
    Entry { code("null"_L1), Kind::Nothing },
    // The name of a kind of thing stands for "missing value".
    Entry { code("type"_L1), Kind::Nothing },
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

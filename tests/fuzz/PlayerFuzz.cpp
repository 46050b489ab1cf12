#include "Fuzz.h"
#include "linux/media/PlayerReading.h"
#include "mediaprotocol/LineCutter.h"
#include "mediaprotocol/MediaMessage.h"

#include <QDBusObjectPath>
#include <QDBusVariant>

#include <algorithm>
#include <cmath>
#include <cstring>

using namespace nimbarrow;
using namespace Qt::StringLiterals;

namespace {

/// Makes properties of bytes: which, of which type, and what is in them.
class Bytes {
public:
    explicit Bytes(QByteArrayView bytes)
        : m_bytes(bytes)
    {
    }

    [[nodiscard]] bool isEmpty() const { return m_bytes.isEmpty(); }

    QByteArrayView next(qsizetype count)
    {
        const auto part = m_bytes.first(std::min(count, m_bytes.size()));
        m_bytes = m_bytes.sliced(part.size());
        return part;
    }

    int number() { return isEmpty() ? 0 : static_cast<unsigned char>(next(1).front()); }

    template <typename Value>
    Value value()
    {
        Value value {};
        const auto part = next(sizeof value);
        std::memcpy(&value, part.data(), static_cast<std::size_t>(part.size()));
        return value;
    }

    QString text()
    {
        // Half characters too: any 16 bits are a unit.
        if (number() % 2 == 0)
            return QString::fromUtf8(next(number() * 8));
        const auto units = next(number() * 2);
        QString text(units.size() / 2, u' ');
        std::memcpy(text.data(), units.data(), static_cast<std::size_t>(text.size()) * 2);
        return text;
    }

    // NOLINTNEXTLINE(misc-no-recursion): as deep as somebody nests it
    QVariant variant(int depth = 0)
    {
        switch (number() % 16) {
        case 0: return text();
        case 1: return value<qint64>();
        case 2: return value<quint64>();
        case 3: return value<double>();
        case 4: return value<qint32>();
        case 5: return value<quint32>();
        case 6: return QVariant::fromValue(value<short>());
        case 7: return QVariant::fromValue(value<uchar>());
        case 8: return number() % 2 == 0;
        case 9: return QStringList { text(), text() };
        case 10: return QVariant::fromValue(QDBusObjectPath(u"/track/"_s + QString::number(number())));
        case 11: return QByteArray(next(8).toByteArray());
        case 12: return depth < 8 ? QVariant::fromValue(QDBusVariant(variant(depth + 1))) : QVariant();
        case 13: return depth < 8 ? QVariantList { variant(depth + 1), variant(depth + 1) } : QVariantList();
        case 14: return properties(depth + 1);
        default: return {};
        }
    }

    // NOLINTNEXTLINE(misc-no-recursion)
    QVariantMap properties(int depth = 0)
    {
        static const QStringList keys { u"Metadata"_s, u"PlaybackStatus"_s, u"Rate"_s, u"Volume"_s,
            u"CanSeek"_s, u"CanControl"_s, u"xesam:title"_s, u"xesam:artist"_s, u"xesam:albumArtist"_s,
            u"xesam:album"_s, u"xesam:url"_s, u"mpris:length"_s, u"mpris:artUrl"_s, u"mpris:trackid"_s,
            u"kde:pid"_s };
        QVariantMap properties;
        for (auto count = number() % 16; count > 0 && depth < 8 && !isEmpty(); --count) {
            const auto& key = keys[number() % keys.size()];
            // Most of what is inside would never be looked at otherwise.
            if (key == "Metadata"_L1 && number() % 4 != 0)
                properties.insert(key, this->properties(depth + 1));
            else if (key == "PlaybackStatus"_L1 && number() % 4 != 0)
                properties.insert(key, u"Playing"_s);
            else
                properties.insert(key, variant(depth + 1));
        }
        return properties;
    }

private:
    QByteArrayView m_bytes;
};

bool isPlainLine(const QString& text)
{
    return text.size() <= 500 && text == text.simplified() && text.isValidUtf16()
        && std::ranges::none_of(text, [](QChar letter) {
               return letter.category() == QChar::Other_Control || letter == QChar::LineSeparator
                   || letter == QChar::ParagraphSeparator || (letter >= u'\u202a' && letter <= u'\u202e')
                   || (letter >= u'\u2066' && letter <= u'\u2069');
           });
}

} // namespace

/// Whatever a player says of itself, up to what the program makes of it.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Bytes bytes(QByteArrayView(data, static_cast<qsizetype>(size)));
    const auto reading = readPlayer(bytes.properties());
    auto state = reading.state;
    fuzz::require(isPlainLine(state.title) && isPlainLine(state.artist) && isPlainLine(state.album),
        "a text is one short plain line");
    fuzz::require(std::isfinite(state.duration) && state.duration >= 0, "a track takes its time");
    fuzz::require(std::isfinite(state.rate) && (state.isPlaying ? state.rate > 0 : state.rate == 0),
        "what plays goes on");
    fuzz::require(!state.volume || (*state.volume >= 0 && *state.volume <= 100), "volume is a percentage");
    fuzz::require(reading.trackPath.isEmpty() || reading.trackPath == state.trackID, "a path is a name");
    if (const auto position = readPosition(bytes.variant())) {
        fuzz::require(std::isfinite(*position) && *position >= 0, "a position is one");
        state.elapsed = *position;
    }
    LineCutter lines(longestMessage);
    const auto cut = lines.add(encode(state));
    fuzz::require(cut.size() == 1, "a message is one line");
    const auto message = decodeMessage(cut[0]);
    fuzz::require(message && *message == MediaMessage(state), "what is written is what is read");
    return 0;
}

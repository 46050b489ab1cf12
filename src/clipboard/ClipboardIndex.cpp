#include "clipboard/ClipboardIndex.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cctype>

using namespace Qt::StringLiterals;

namespace nimbarrow::clipboardindex {

namespace {

namespace key {
constexpr auto id = "id"_L1;
constexpr auto kind = "kind"_L1;
constexpr auto createdAt = "createdAt"_L1;
constexpr auto text = "text"_L1;
constexpr auto imagePath = "imagePath"_L1;
constexpr auto filePaths = "filePaths"_L1;
constexpr auto isScreenshot = "isScreenshot"_L1;
constexpr auto sourceApp = "sourceApp"_L1;
constexpr auto contentHash = "contentHash"_L1;
constexpr auto pinned = "pinned"_L1;
} // namespace key

QJsonObject encodeItem(const ClipboardItem& item)
{
    QJsonObject object {
        { key::id, item.id.toString(QUuid::WithoutBraces).toUpper() },
        { key::kind, rawValue(item.kind) },
        { key::createdAt, item.createdAt.toUTC().toString(Qt::ISODate) },
        { key::isScreenshot, item.isScreenshot },
        { key::pinned, item.pinned },
    };
    const auto put = [&object](QLatin1StringView name, const std::optional<QString>& value) {
        if (value)
            object.insert(name, *value);
    };
    put(key::text, item.text);
    put(key::imagePath, item.imagePath);
    put(key::sourceApp, item.sourceApp);
    put(key::contentHash, item.contentHash);
    if (item.filePaths)
        object.insert(key::filePaths, QJsonArray::fromStringList(*item.filePaths));
    return object;
}

qsizetype encodedSize(QStringView text)
{
    constexpr qsizetype escaped = 6;
    qsizetype size = 0;
    for (qsizetype at = 0; at < text.size(); ++at) {
        const auto code = text[at].unicode();
        if (code < 0x20)
            size += code >= u'\b' && code <= u'\r' && code != u'\v' ? 2 : escaped;
        else if (code < 0x80)
            size += code == u'"' || code == u'\\' || code == u'/' ? 2 : 1;
        else if (code < 0x800)
            size += 2;
        else if (text[at].isLowSurrogate() && at > 0 && text[at - 1].isHighSurrogate())
            // With the other half, which was taken for a lone one.
            size += 4 - escaped;
        else
            size += text[at].isSurrogate() ? escaped : 3;
    }
    return size;
}

/// In the shape, "d" stands for a digit and "h" for a hexadecimal one; the rest for itself.
bool hasShape(QStringView text, QLatin1StringView shape)
{
    return std::equal(text.begin(), text.end(), shape.begin(), shape.end(), [](QChar character, char wanted) {
        const auto unicode = character.unicode();
        if (wanted == 'd')
            return unicode >= u'0' && unicode <= u'9';
        if (wanted == 'h')
            return unicode < 0x80 && std::isxdigit(unicode) != 0;
        return character == QLatin1Char(wanted);
    });
}

/// In "2026-11-21T09:41:00Z", without the zone.
constexpr qsizetype lengthOfMoment = 19;

/// Reads the values of one object and remembers whether any of them was not what it has to be.
class Reader {
public:
    explicit Reader(const QJsonObject& object)
        : m_object(object)
    {
    }

    [[nodiscard]] bool isGood() const { return m_good; }

    QString string(QLatin1StringView name) { return text(m_object.value(name)); }

    bool boolean(QLatin1StringView name)
    {
        const auto value = m_object.value(name);
        require(value.isBool());
        return value.toBool();
    }

    std::optional<QString> optionalString(QLatin1StringView name)
    {
        const auto value = m_object.value(name);
        if (value.isUndefined() || value.isNull())
            return std::nullopt;
        return text(value);
    }

    std::optional<QStringList> optionalStrings(QLatin1StringView name)
    {
        const auto value = m_object.value(name);
        if (value.isUndefined() || value.isNull())
            return std::nullopt;
        require(value.isArray());
        QStringList strings;
        for (const auto& element : value.toArray())
            strings << text(element);
        return strings;
    }

    QUuid uuid(QLatin1StringView name)
    {
        const auto text = string(name);
        require(hasShape(text, "hhhhhhhh-hhhh-hhhh-hhhh-hhhhhhhhhhhh"_L1));
        return QUuid::fromString(text);
    }

    QDateTime date(QLatin1StringView name)
    {
        // Qt's own reader takes fractions, a lone date, an hour 24 and more.
        const auto text = string(name);
        const auto moment = QStringView(text).first(std::min<qsizetype>(text.size(), lengthOfMoment));
        const auto zone = QStringView(text).sliced(moment.size());
        require(hasShape(moment, "dddd-dd-ddTdd:dd:dd"_L1) && moment.sliced(11, 2) < "24"_L1);
        require(zone == "Z"_L1
            || ((hasShape(zone, "+dd:dd"_L1) || hasShape(zone, "-dd:dd"_L1)) && zone.sliced(1, 2) < "24"_L1
                && zone.sliced(4) < "60"_L1));
        const auto date = QDateTime::fromString(text, Qt::ISODate);
        // In UTC it may be another year, and one without four digits could not be written again.
        auto utc = date.toUTC();
        require(date.isValid() && utc.date().year() >= 1 && utc.date().year() <= 9999);
        return utc;
    }

    ClipboardItem::Kind kind(QLatin1StringView name)
    {
        using Kind = ClipboardItem::Kind;
        const auto text = string(name);
        for (const auto kind : { Kind::Text, Kind::Link, Kind::Image, Kind::Files }) {
            if (rawValue(kind) == text)
                return kind;
        }
        require(false);
        return {};
    }

private:
    void require(bool condition) { m_good = m_good && condition; }

    QString text(const QJsonValue& value)
    {
        require(value.isString());
        return value.toString();
    }

    const QJsonObject& m_object;
    bool m_good = true;
};

std::optional<ClipboardItem> decodeItem(const QJsonValue& value)
{
    if (!value.isObject())
        return std::nullopt;
    const auto object = value.toObject();
    Reader reader(object);
    ClipboardItem item {
        .id = reader.uuid(key::id),
        .kind = reader.kind(key::kind),
        .createdAt = reader.date(key::createdAt),
        .text = reader.optionalString(key::text),
        .imagePath = reader.optionalString(key::imagePath),
        .filePaths = reader.optionalStrings(key::filePaths),
        .isScreenshot = reader.boolean(key::isScreenshot),
        .sourceApp = reader.optionalString(key::sourceApp),
        .contentHash = reader.optionalString(key::contentHash),
        .pinned = reader.boolean(key::pinned),
    };
    return reader.isGood() ? std::optional(std::move(item)) : std::nullopt;
}

} // namespace

qsizetype encodedSize(const ClipboardItem& item)
{
    // The names of the keys, the values of fixed length and what stands between them.
    constexpr qsizetype frame = 448;
    constexpr qsizetype perPath = 16;
    auto size = frame + encodedSize(item.text.value_or(QString()))
        + encodedSize(item.imagePath.value_or(QString())) + encodedSize(item.sourceApp.value_or(QString()))
        + encodedSize(item.contentHash.value_or(QString()));
    for (const auto& path : item.filePaths.value_or(QStringList()))
        size += perPath + encodedSize(path);
    return size;
}

QByteArray encode(const QList<ClipboardItem>& items)
{
    QJsonArray array;
    for (const auto& item : items)
        array.append(encodeItem(item));
    // Outside of strings JSON has no slash, and the writer never puts a lone backslash before one.
    return QJsonDocument(array).toJson(QJsonDocument::Indented).replace('/', "\\/");
}

std::optional<QList<ClipboardItem>> decode(const QByteArray& json)
{
    if (json.size() > maxSize)
        return std::nullopt;
    const auto document = QJsonDocument::fromJson(json);
    if (!document.isArray())
        return std::nullopt;
    const auto array = document.array();
    QList<ClipboardItem> items;
    items.reserve(array.size());
    for (const auto& element : array) {
        auto item = decodeItem(element);
        if (!item)
            return std::nullopt;
        items << *std::move(item);
    }
    return items;
}

} // namespace nimbarrow::clipboardindex

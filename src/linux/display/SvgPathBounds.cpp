#include "linux/display/SvgPathBounds.h"

#include <QRegularExpression>
#include <QSvgRenderer>

using namespace Qt::StringLiterals;

namespace nimbarrow {
namespace {

// No panel has so many pixels; larger numbers would only lose their precision.
constexpr double farthest = 1e6;

/// Whether it is a whole path by the grammar of SVG: the renderer draws what it understands of any text.
/// Nothing is read twice, so the longest text is read in one go.
bool isPath(const QString& text)
{
    // The flags of an arc may stand together without a separator: "a5 5 0 01 10 10".
    static const auto number = uR"([\s,]*+[-+]?+(?:\d++\.?+\d*+|\.\d++)(?:E[-+]?+\d++)?+[\s,]*+)"_s;
    static const auto flag = uR"([\s,]*+[01][\s,]*+)"_s;
    static const QRegularExpression grammar(
        uR"(^[\s,]*+M(?:(?:%1){2})++(?:[MLT](?:(?:%1){2})++|[HV](?:%1)++|C(?:(?:%1){6})++)"
        R"(|[SQ](?:(?:%1){4})++|A(?:(?:%1){3}%2%2(?:%1){2})++|Z[\s,]*+)*+$)"_s.arg(number, flag),
        QRegularExpression::CaseInsensitiveOption);
    return grammar.match(text).hasMatch();
}

} // namespace

std::optional<QRectF> svgPathBounds(QByteArrayView path)
{
    if (!isPath(QString::fromLatin1(path)))
        return {};
    QSvgRenderer renderer;
    if (!renderer.load(R"(<svg xmlns="http://www.w3.org/2000/svg"><path id="path" d=")" + path.toByteArray()
            + R"("/></svg>)"))
        return {};
    const auto box = renderer.boundsOnElement(u"path"_s);
    constexpr QRectF possible(-farthest, -farthest, 2 * farthest, 2 * farthest);
    // Also false for what is no number.
    if (!(box.width() > 0 && box.height() > 0) || !possible.contains(box))
        return {};
    return box;
}

} // namespace nimbarrow

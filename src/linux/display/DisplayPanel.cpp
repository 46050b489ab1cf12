#include "linux/display/DisplayPanel.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSvgRenderer>

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

using namespace Qt::StringLiterals;

namespace nimbarrow {
namespace {

constexpr auto longestSide = 32'768;

// A mode's size is computed back from points, which a fractional scale rounds.
bool isSame(double a, double b)
{
    return std::abs(a - b) <= 1;
}

// No panel has so many pixels; larger numbers would only lose their precision.
constexpr double farthest = 1e6;

/// Skips the first character if it is one of these.
bool skipOne(QByteArrayView& text, QByteArrayView characters)
{
    const auto isThere = !text.isEmpty() && characters.contains(text.front());
    if (isThere)
        text = text.sliced(1);
    return isThere;
}

bool skipAll(QByteArrayView& text, QByteArrayView characters)
{
    const auto before = text.size();
    while (skipOne(text, characters)) { }
    return text.size() < before;
}

bool skipNumber(QByteArrayView& text)
{
    constexpr QByteArrayView digits = "0123456789";
    skipOne(text, "+-");
    const auto hasWhole = skipAll(text, digits);
    const auto hasFraction = skipOne(text, ".") && skipAll(text, digits);
    if (!hasWhole && !hasFraction)
        return false;
    if (!skipOne(text, "Ee"))
        return true;
    skipOne(text, "+-");
    return skipAll(text, digits);
}

/// Whether it is a whole path by the grammar of SVG: the renderer draws what it understands of any text.
/// Without a regular expression: this runs at every start, and their library takes half a megabyte.
bool isPath(QByteArrayView text)
{
    struct Command {
        QByteArrayView letters;
        /// Numbers, and flags, which may stand together without a separator: "a5 5 0 01 10 10".
        std::string_view arguments;
    };
    constexpr std::array commands { Command { "MmLlTt", "nn" }, Command { "HhVv", "n" },
        Command { "Cc", "nnnnnn" }, Command { "SsQq", "nnnn" }, Command { "Aa", "nnnffnn" },
        Command { "Zz", "" } };
    constexpr QByteArrayView separators = " \t\n\v\f\r,";
    skipAll(text, separators);
    if (!text.startsWith('M') && !text.startsWith('m'))
        return false;
    while (!text.isEmpty()) {
        const auto* const command = std::ranges::find_if(
            commands, [letter = text.front()](const Command& each) { return each.letters.contains(letter); });
        if (command == commands.end())
            return false;
        text = text.sliced(1);
        skipAll(text, separators);
        do {
            for (const auto argument : command->arguments) {
                if (!(argument == 'f' ? skipOne(text, "01") : skipNumber(text)))
                    return false;
                skipAll(text, separators);
            }
        } while (!command->arguments.empty() && !text.isEmpty() && text.front() < 'A');
    }
    return true;
}

/// The smallest box around a path: the curves' true extent, not that of their control points. None for text
/// that is no path, for coordinates that are no sane lengths, and for a path that encloses nothing.
std::optional<QRectF> svgPathBounds(const QByteArray& path)
{
    if (!isPath(path))
        return {};
    QSvgRenderer renderer;
    if (!renderer.load(
            R"(<svg xmlns="http://www.w3.org/2000/svg"><path id="path" d=")" + path + R"("/></svg>)"))
        return {};
    const auto box = renderer.boundsOnElement(u"path"_s);
    constexpr QRectF possible(-farthest, -farthest, 2 * farthest, 2 * farthest);
    // Also false for what is no number.
    if (!(box.width() > 0 && box.height() > 0) || !possible.contains(box))
        return {};
    return box;
}

} // namespace

std::optional<DisplayPanel> DisplayPanel::fromJson(const QByteArray& json)
{
    const auto object = QJsonDocument::fromJson(json).object();
    const QSize resolution(object["x-res"_L1].toInt(), object["y-res"_L1].toInt());
    if (resolution.isEmpty() || resolution.width() > longestSide || resolution.height() > longestSide)
        return {};
    DisplayPanel panel { object["name"_L1].toString(), resolution, {} };
    for (const auto cutouts = object["cutouts"_L1].toArray(); const auto& cutout : cutouts) {
        const auto box = svgPathBounds(cutout.toObject()["path"_L1].toString().toUtf8());
        if (!box)
            continue;
        const auto inside = *box & QRectF(QPointF(), QSizeF(resolution));
        if (!inside.isEmpty())
            panel.cutouts << inside;
    }
    return panel;
}

QByteArray DisplayPanel::json(const QString& name, QSize resolution, const QRect& cutout)
{
    QJsonArray cutouts;
    if (!cutout.isEmpty()) {
        const auto path
            = u"M %1,%2 H %3 V %4 H %1 Z"_s.arg(QString::number(cutout.x()), QString::number(cutout.y()),
                QString::number(cutout.x() + cutout.width()), QString::number(cutout.y() + cutout.height()));
        cutouts << QJsonObject { { u"name"_s, u"notch"_s }, { u"path"_s, path } };
    }
    return QJsonDocument(QJsonObject { { u"name"_s, name }, { u"x-res"_s, resolution.width() },
                             { u"y-res"_s, resolution.height() }, { u"cutouts"_s, cutouts } })
        .toJson();
}

std::optional<QRectF> DisplayPanel::topCutout(QSize mode, int hiddenRows) const
{
    const double width = resolution.width();
    const double height = resolution.height();
    const auto rowsAreHidden = mode.height() == resolution.height() - hiddenRows;
    if (hiddenRows > 0 && rowsAreHidden)
        return {};
    const auto scale = mode.width() / width;
    if (!isSame(mode.height(), height * scale))
        return {};
    const auto cutout = std::find_if(cutouts.cbegin(), cutouts.cend(),
        [height](const QRectF& box) { return box.center().y() < height / 2; });
    if (cutout == cutouts.cend())
        return {};
    return QRectF(cutout->topLeft() * scale, cutout->size() * scale);
}

} // namespace nimbarrow

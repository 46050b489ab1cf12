#include "linux/panel/CoveredRows.h"

#include <QPolygonF>
#include <QTransform>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace nimbarrow {
namespace {

// The server's coordinates have 16 bits.
constexpr double farthest = 16'384;
constexpr std::array lines { 0.25, 0.75 };

struct Crossing {
    double x;
    int direction;
};

struct Span {
    int left;
    int right;

    friend bool operator==(const Span&, const Span&) = default;
};

using Spans = std::vector<Span>;

void addCrossings(const QPolygonF& polygon, double y, std::vector<Crossing>& crossings)
{
    for (qsizetype i = 0; i < polygon.size(); ++i) {
        const auto from = polygon[i];
        const auto to = polygon[(i + 1) % polygon.size()];
        if ((from.y() <= y) == (to.y() <= y))
            continue;
        const auto share = (y - from.y()) / (to.y() - from.y());
        crossings.push_back({ from.x() + share * (to.x() - from.x()), from.y() < to.y() ? 1 : -1 });
    }
}

void addSpans(std::vector<Crossing>& crossings, Qt::FillRule rule, Spans& spans)
{
    std::ranges::sort(crossings, {}, &Crossing::x);
    auto winding = 0;
    for (std::size_t i = 0; i + 1 < crossings.size(); ++i) {
        winding += crossings[i].direction;
        const auto isInside = rule == Qt::WindingFill ? winding != 0 : i % 2 == 0;
        const Span span { static_cast<int>(std::lround(crossings[i].x)),
            static_cast<int>(std::lround(crossings[i + 1].x)) };
        if (isInside && span.left < span.right)
            spans.push_back(span);
    }
}

Spans merged(Spans spans)
{
    std::ranges::sort(spans, {}, &Span::left);
    Spans result;
    for (const auto& span : spans) {
        if (!result.empty() && span.left <= result.back().right)
            result.back().right = std::max(result.back().right, span.right);
        else
            result.push_back(span);
    }
    return result;
}

} // namespace

QList<QRect> coveredRows(const QPainterPath& path, qreal devicePixelRatio)
{
    const auto polygons = path.toSubpathPolygons(QTransform::fromScale(devicePixelRatio, devicePixelRatio));
    QRectF box;
    for (const auto& polygon : polygons)
        box |= polygon.boundingRect();
    const QRectF possible(-farthest, -farthest, 2 * farthest, 2 * farthest);
    // Also false for what is no number.
    if (!possible.contains(box))
        return {};

    QList<QRect> result;
    Spans previous;
    qsizetype previousBegin = 0;
    const auto bottom = static_cast<int>(std::ceil(box.bottom()));
    for (auto y = static_cast<int>(std::floor(box.top())); y < bottom; ++y) {
        Spans spans;
        for (const auto line : lines) {
            std::vector<Crossing> crossings;
            for (const auto& polygon : polygons)
                addCrossings(polygon, y + line, crossings);
            addSpans(crossings, path.fillRule(), spans);
        }
        spans = merged(std::move(spans));
        if (spans == previous) {
            for (auto i = previousBegin; i < result.size(); ++i)
                result[i].setBottom(y);
            continue;
        }
        previousBegin = result.size();
        for (const auto& span : spans)
            result << QRect(span.left, y, span.right - span.left, 1);
        previous = std::move(spans);
    }
    return result;
}

} // namespace nimbarrow

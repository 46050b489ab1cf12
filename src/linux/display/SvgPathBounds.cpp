#include "linux/display/SvgPathBounds.h"

#include <QPointF>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace nimbarrow {
namespace {

// No panel has so many pixels; larger numbers would only lose their precision.
constexpr double farthest = 1e6;

// Reads the tokens of a path. Every reading function moves on by at least one byte or fails, so reading ends.
class PathText {
public:
    explicit PathText(QByteArrayView text)
        : m_text(text)
    {
    }

    bool atEnd()
    {
        skipSeparators();
        return m_position >= m_text.size();
    }

    bool atNumber()
    {
        skipSeparators();
        const auto c = peek();
        return isDigit(c) || c == '.' || c == '-' || c == '+';
    }

    char command() { return m_text[m_position++]; }

    std::optional<double> number()
    {
        skipSeparators();
        const auto negative = peek() == '-';
        if (peek() == '-' || peek() == '+')
            ++m_position;
        double value = 0;
        auto digits = 0;
        for (; isDigit(peek()); ++m_position, ++digits)
            value = std::min(value * 10 + (peek() - '0'), farthest * 10);
        if (peek() == '.') {
            ++m_position;
            for (double place = 0.1; isDigit(peek()); ++m_position, ++digits, place /= 10)
                value += place * (peek() - '0');
        }
        if (digits == 0 || !applyExponent(value) || !(value <= farthest))
            return {};
        return negative ? -value : value;
    }

    // The flags of an arc may stand together without a separator: "a5 5 0 01 10 10".
    std::optional<bool> flag()
    {
        skipSeparators();
        if (peek() != '0' && peek() != '1')
            return {};
        return m_text[m_position++] == '1';
    }

private:
    static bool isDigit(char c) { return c >= '0' && c <= '9'; }
    [[nodiscard]] char peek() const { return m_position < m_text.size() ? m_text[m_position] : '\0'; }

    void skipSeparators()
    {
        while (m_position < m_text.size() && QByteArrayView(" \t\r\n\f,").contains(m_text[m_position]))
            ++m_position;
    }

    bool applyExponent(double& value)
    {
        if (peek() != 'e' && peek() != 'E')
            return true;
        ++m_position;
        const auto negative = peek() == '-';
        if (peek() == '-' || peek() == '+')
            ++m_position;
        auto exponent = 0;
        auto digits = 0;
        for (; isDigit(peek()); ++m_position, ++digits)
            exponent = std::min(exponent * 10 + (peek() - '0'), 1000);
        value *= std::pow(10.0, negative ? -exponent : exponent);
        return digits > 0;
    }

    QByteArrayView m_text;
    qsizetype m_position = 0;
};

class Box {
public:
    void add(QPointF point)
    {
        m_left = std::min(m_left, point.x());
        m_right = std::max(m_right, point.x());
        m_top = std::min(m_top, point.y());
        m_bottom = std::max(m_bottom, point.y());
    }

    [[nodiscard]] std::optional<QRectF> rect() const
    {
        if (!(m_left <= m_right && m_top <= m_bottom))
            return {};
        return QRectF(QPointF(m_left, m_top), QPointF(m_right, m_bottom));
    }

private:
    double m_left = HUGE_VAL;
    double m_right = -HUGE_VAL;
    double m_top = HUGE_VAL;
    double m_bottom = -HUGE_VAL;
};

class Bounds {
public:
    std::optional<QRectF> of(QByteArrayView text)
    {
        PathText path(text);
        char command = 0;
        while (!path.atEnd()) {
            if (!path.atNumber()) {
                command = path.command();
                // Every path begins by saying where.
                if (!m_started && command != 'M' && command != 'm')
                    return {};
            } else if (command == 0 || command == 'Z' || command == 'z') {
                return {};
            }
            if (!segment(path, command))
                return {};
            m_started = true;
            // Further pairs after a move are lines.
            if (command == 'M' || command == 'm')
                command = command == 'M' ? 'L' : 'l';
        }
        return m_box.rect();
    }

private:
    bool segment(PathText& path, char command)
    {
        const auto relative = command >= 'a';
        const auto origin = relative ? m_current : QPointF();
        const auto kind = static_cast<char>(relative ? command - 'a' + 'A' : command);
        // A smooth curve goes on from the last control point only after a curve of its own kind.
        const auto smoothFrom
            = m_lastKind == kind || (m_lastKind == 'C' && kind == 'S') || (m_lastKind == 'Q' && kind == 'T')
            ? 2 * m_current - m_control
            : m_current;
        m_lastKind = kind;

        std::array<double, 6> n {};
        const auto read = [&path, &n](std::size_t count) {
            return std::all_of(n.begin(), n.begin() + count, [&path](double& value) {
                const auto number = path.number();
                value = number.value_or(0);
                return number.has_value();
            });
        };
        const auto point = [&n, origin](std::size_t i) { return origin + QPointF(n[i], n[i + 1]); };
        switch (kind) {
        case 'M':
            if (!read(2))
                return false;
            m_current = m_start = point(0);
            return isSane(m_current);
        case 'L': return read(2) && lineTo(point(0));
        case 'H': return read(1) && lineTo({ origin.x() + n[0], m_current.y() });
        case 'V': return read(1) && lineTo({ m_current.x(), origin.y() + n[0] });
        case 'C': return read(6) && cubicTo(point(0), point(2), point(4));
        case 'S': return read(4) && cubicTo(smoothFrom, point(0), point(2));
        case 'Q': return read(4) && quadTo(point(0), point(2));
        case 'T': return read(2) && quadTo(smoothFrom, point(0));
        case 'A': return arcTo(path, origin);
        case 'Z': return lineTo(m_start);
        default: return false;
        }
    }

    static bool isSane(QPointF point)
    {
        return std::abs(point.x()) <= farthest && std::abs(point.y()) <= farthest;
    }

    bool lineTo(QPointF end)
    {
        m_box.add(m_current);
        m_box.add(end);
        m_current = end;
        return isSane(end);
    }

    bool quadTo(QPointF control, QPointF end)
    {
        const auto start = m_current;
        const auto done = cubicTo(start + (control - start) * 2 / 3, end + (control - end) * 2 / 3, end);
        m_control = control;
        return done;
    }

    bool cubicTo(QPointF first, QPointF second, QPointF end)
    {
        const auto start = m_current;
        const auto at = [&](double t) {
            const auto u = 1 - t;
            return start * (u * u * u) + first * (3 * u * u * t) + second * (3 * u * t * t)
                + end * (t * t * t);
        };
        // The curve turns back on an axis where its derivative on that axis is zero.
        const auto addTurns = [&](double p0, double p1, double p2, double p3) {
            const auto a = p3 - 3 * p2 + 3 * p1 - p0;
            const auto b = 2 * (p2 - 2 * p1 + p0);
            const auto c = p1 - p0;
            const auto root = std::sqrt(std::max(b * b - 4 * a * c, 0.0));
            const auto turns = std::abs(a) < 1e-9
                ? std::array { -c / b, -c / b }
                : std::array { (-b + root) / (2 * a), (-b - root) / (2 * a) };
            for (const auto t : turns) {
                if (t > 0 && t < 1)
                    m_box.add(at(t));
            }
        };
        addTurns(start.x(), first.x(), second.x(), end.x());
        addTurns(start.y(), first.y(), second.y(), end.y());
        m_control = second;
        return isSane(first) && isSane(second) && lineTo(end);
    }

    bool arcTo(PathText& path, QPointF origin)
    {
        const auto radiusX = path.number();
        const auto radiusY = path.number();
        const auto degrees = path.number();
        const auto large = path.flag();
        const auto sweep = path.flag();
        const auto x = path.number();
        const auto y = path.number();
        if (!radiusX || !radiusY || !degrees || !large || !sweep || !x || !y)
            return false;
        const auto end = origin + QPointF(*x, *y);
        addArc(std::abs(*radiusX), std::abs(*radiusY), *degrees * std::numbers::pi / 180, *large != *sweep,
            *sweep, end);
        return lineTo(end);
    }

    void addArc(double rx, double ry, double tilt, bool centreOnLeft, bool sweep, QPointF end)
    {
        if (rx == 0 || ry == 0 || end == m_current)
            return;
        const auto cosine = std::cos(tilt);
        const auto sine = std::sin(tilt);
        // In the ellipse's own axes, with the origin halfway between the ends.
        const auto half = (m_current - end) / 2;
        const QPointF own(cosine * half.x() + sine * half.y(), cosine * half.y() - sine * half.x());
        const auto reach = std::hypot(own.x() / rx, own.y() / ry);
        if (reach > 1) {
            rx *= reach;
            ry *= reach;
        }
        const auto span = std::pow(rx * own.y(), 2) + std::pow(ry * own.x(), 2);
        const auto offset
            = std::sqrt(std::max(std::pow(rx * ry, 2) - span, 0.0) / span) * (centreOnLeft ? 1 : -1);
        const QPointF ownCentre(offset * rx * own.y() / ry, -offset * ry * own.x() / rx);
        const auto middle = (m_current + end) / 2;
        const QPointF centre(middle.x() + cosine * ownCentre.x() - sine * ownCentre.y(),
            middle.y() + sine * ownCentre.x() + cosine * ownCentre.y());

        const auto from = std::atan2((own.y() - ownCentre.y()) / ry, (own.x() - ownCentre.x()) / rx);
        const auto to = std::atan2((-own.y() - ownCentre.y()) / ry, (-own.x() - ownCentre.x()) / rx);
        const auto turn = [](double angle) {
            const auto rest = std::fmod(angle, 2 * std::numbers::pi);
            return rest < 0 ? rest + 2 * std::numbers::pi : rest;
        };
        const auto length = sweep ? turn(to - from) : turn(from - to);
        const auto xTurn = std::atan2(-ry * sine, rx * cosine);
        const auto yTurn = std::atan2(ry * cosine, rx * sine);
        for (const auto angle : { xTurn, xTurn + std::numbers::pi, yTurn, yTurn + std::numbers::pi }) {
            if ((sweep ? turn(angle - from) : turn(from - angle)) > length)
                continue;
            const QPointF own(rx * std::cos(angle), ry * std::sin(angle));
            m_box.add({ centre.x() + cosine * own.x() - sine * own.y(),
                centre.y() + sine * own.x() + cosine * own.y() });
        }
    }

    Box m_box;
    QPointF m_start;
    QPointF m_current;
    QPointF m_control;
    char m_lastKind = 0;
    bool m_started = false;
};

} // namespace

std::optional<QRectF> svgPathBounds(QByteArrayView path)
{
    return Bounds().of(path);
}

} // namespace nimbarrow

#include "keepawake/OwlDrawing.h"

#include "keepawake/Glide.h"

#include <QColor>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace nimbarrow {

namespace {

// Everything is drawn on a grid of 24 x 24, y down, standing near its lower edge. A hop and the z's reach
// above it.
constexpr qreal grid = 24;
constexpr qreal middle = grid / 2;
constexpr qreal ground = 23;

/// By day, and dimmed to moonlight.
struct Colour {
    QColor day;
    QColor night;

    [[nodiscard]] QColor at(double wake) const
    {
        const auto mix
            = [wake](int from, int to) { return from + static_cast<int>(std::lround(wake * (to - from))); };
        return { mix(night.red(), day.red()), mix(night.green(), day.green()),
            mix(night.blue(), day.blue()) };
    }
};

const Colour feathers { QColor(0xc0, 0x85, 0x4c), QColor(0x5b, 0x58, 0x78) };
const Colour wing { QColor(0x8d, 0x5a, 0x2f), QColor(0x45, 0x43, 0x60) };
const Colour down { QColor(0xf7, 0xe3, 0xc0), QColor(0x9d, 0x9a, 0xbd) };
const Colour speckle { QColor(0xc9, 0x97, 0x62), QColor(0x90, 0x8d, 0xb0) };
const Colour horn { QColor(0xff, 0xa0, 0x2e), QColor(0xa8, 0x90, 0x86) };
const Colour lash { QColor(0x4a, 0x2c, 0x14), QColor(0x17, 0x16, 0x2a) };
const QColor iris(0xff, 0xc2, 0x2e);
const QColor pupil(0x17, 0x10, 0x0a);
const QColor moonlight(0xd8, 0xdc, 0xff);

class Owl {
public:
    Owl(QPainter& painter, const OwlPose& pose)
        : m_painter(painter)
        , m_pose(pose)
        , m_asleep(1 - pose.wake)
    {
    }

    void draw()
    {
        m_painter.save();
        settleOnGround();
        feet();
        body();
        head();
        m_painter.restore();
        if (m_asleep > 0)
            sleepSounds();
    }

private:
    [[nodiscard]] QColor colour(const Colour& c) const { return c.at(m_pose.wake); }

    void fill(const QPainterPath& path, const QColor& colour) { m_painter.fillPath(path, colour); }

    void disc(QPointF centre, qreal radiusX, qreal radiusY, const QColor& colour)
    {
        QPainterPath path;
        path.addEllipse(centre, radiusX, radiusY);
        fill(path, colour);
    }

    void settleOnGround()
    {
        // Asleep it makes itself small and leaves the corner to its z's.
        const auto size = 1 - 0.1 * m_asleep;
        const auto stretch = 1 + 0.07 * std::clamp(m_pose.hop, -1.0, 1.0);
        m_painter.translate(middle - 1.9 * m_asleep, ground - 2.2 * std::max(m_pose.hop, 0.0));
        m_painter.scale(size / std::sqrt(stretch), size * stretch);
        m_painter.translate(-middle, -ground);
    }

    void feet()
    {
        for (const auto side : { -1, 1 })
            disc({ middle + side * 3.1, ground - 0.5 }, 1.9, 1.0, colour(horn));
    }

    void body()
    {
        const auto breath = 0.55 * m_pose.breathe;
        QPainterPath egg(QPointF(middle, 9));
        const auto side = 8.3 + breath;
        egg.cubicTo(middle + side, 9, middle + side + 0.4, ground - 0.6, middle, ground - 0.6);
        egg.cubicTo(middle - side - 0.4, ground - 0.6, middle - side, 9, middle, 9);
        fill(egg, colour(wing));
        QPainterPath belly;
        belly.addEllipse(QPointF(middle, 18.2), 4.9 + breath * 0.6, 4.2);
        fill(belly, colour(down));
        m_painter.setPen(QPen(colour(speckle), 0.9, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        m_painter.setBrush(Qt::NoBrush);
        for (const auto place :
            { QPointF(middle - 1.7, 18.6), QPointF(middle + 1.7, 18.6), QPointF(middle, 20.4) }) {
            QPainterPath feather(place + QPointF(-0.9, -0.5));
            feather.lineTo(place + QPointF(0, 0.35));
            feather.lineTo(place + QPointF(0.9, -0.5));
            m_painter.drawPath(feather);
        }
        m_painter.setPen(Qt::NoPen);
    }

    void head()
    {
        m_painter.save();
        // It sinks between the shoulders, and rises with each breath.
        m_painter.translate(middle, 14 + 1.7 * m_asleep - 0.75 * m_pose.breathe);
        m_painter.rotate(m_pose.tilt);
        m_painter.translate(-middle, -14);
        skull();
        for (const auto side : { -1, 1 })
            disc({ middle + side * 3.85, 10.3 }, 4.9, 4.9, colour(down));
        for (const auto side : { -1, 1 })
            eye(middle + side * 4.0);
        beak();
        m_painter.restore();
    }

    void skull()
    {
        // The tufts hang when nobody listens.
        const auto out = middle - 3.1 + 0.3 * m_asleep;
        const auto tip = 1.4 + 2.6 * m_asleep;
        QPainterPath path(QPointF(middle, 4.6));
        path.quadTo(middle + 4.2, 4.4, middle + out, tip);
        path.cubicTo(middle + out + 0.9, 4.8, 21.8, 8, 21.2, 11.2);
        path.cubicTo(20.6, 15.6, 16.4, 16.9, middle, 16.9);
        path.cubicTo(7.6, 16.9, 3.4, 15.6, 2.8, 11.2);
        path.cubicTo(2.2, 8, middle - out - 0.9, 4.8, middle - out, tip);
        path.quadTo(middle - 4.2, 4.4, middle, 4.6);
        fill(path, colour(feathers));
    }

    void eye(qreal x)
    {
        const auto open = std::clamp((1 - m_pose.blink) * m_pose.wake, 0.0, 1.0);
        const QPointF centre(x, 10.3);
        if (open < 0.2) {
            QPainterPath lid(centre + QPointF(-2.5, -0.3));
            lid.quadTo(centre + QPointF(0, 3.1), centre + QPointF(2.5, -0.3));
            m_painter.setBrush(Qt::NoBrush);
            m_painter.setPen(QPen(colour(lash), 1.4 + 0.25 * m_asleep, Qt::SolidLine, Qt::RoundCap));
            m_painter.drawPath(lid);
            m_painter.setPen(Qt::NoPen);
            return;
        }
        m_painter.save();
        QPainterPath opening;
        opening.addEllipse(centre, 3.6, 3.6 * open);
        m_painter.setClipPath(opening, Qt::IntersectClip);
        disc(centre, 3.6, 3.6, iris);
        const auto look = centre + QPointF(1.15 * m_pose.glance, 0);
        disc(look, 2.35, 2.35, pupil);
        disc(look + QPointF(0.85, -0.95), 0.85, 0.85, Qt::white);
        m_painter.restore();
    }

    void beak()
    {
        QPainterPath path(QPointF(middle - 1.55, 11.7));
        path.quadTo(middle, 10.5, middle + 1.55, 11.7);
        path.quadTo(middle + 0.9, 13.6, middle, 14.7);
        path.quadTo(middle - 0.9, 13.6, middle - 1.55, 11.7);
        fill(path, colour(horn));
    }

    void sleepSounds()
    {
        for (const auto ahead : { 0.0, 0.5 }) {
            const auto part = std::fmod(m_pose.zRise + ahead, 1.0);
            const auto way = Glide::eased(Glide::Ease::Out, part);
            const auto size = 0.75 + 1.2 * way;
            const QPointF place(16.9 + 4.8 * way, 9 - 8.8 * way);
            const auto seen = std::min({ 1.0, part * 6, (1 - part) * 3.2 });
            auto colour = moonlight;
            colour.setAlphaF(static_cast<float>(m_asleep * seen));
            m_painter.setPen(QPen(colour, 1.05, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
            m_painter.drawPolyline(QPolygonF { place + QPointF(-size, -size), place + QPointF(size, -size),
                place + QPointF(-size, size), place + QPointF(size, size) });
            m_painter.setPen(Qt::NoPen);
        }
    }

    QPainter& m_painter;
    const OwlPose& m_pose;
    double m_asleep;
};

} // namespace

void drawOwl(QPainter& painter, const QRectF& rect, const OwlPose& pose)
{
    const auto side = rect.width();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.translate(rect.left(), rect.bottom() - side);
    painter.scale(side / grid, side / grid);
    Owl(painter, pose).draw();
    painter.restore();
}

} // namespace nimbarrow

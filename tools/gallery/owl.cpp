// Draws the owl in each of its states and through each of its moves, into pictures for people to look at:
//
//     QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software owlgallery <folder>

#include "keepawake/OwlDrawing.h"
#include "keepawake/OwlMotion.h"
#include "support/ManualTime.h"

#include <QDir>
#include <QGuiApplication>
#include <QPainter>

#include <cmath>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace nimbarrow;

namespace {

QImage picture(int size, const OwlPose& pose)
{
    QImage image(size, static_cast<int>(std::ceil(size * owlHeadroom)), QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    drawOwl(painter, image.rect(), pose);
    return image;
}

/// One row for each size, at 1x and at 3x.
QImage sheet(const QList<OwlPose>& poses)
{
    const QList<int> sizes { 16, 20, 24, 28, 48, 60, 72, 84 };
    QImage image(static_cast<int>(poses.size()) * 96, 480, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    int y = 8;
    for (const auto size : sizes) {
        int x = 6;
        for (const auto& pose : poses) {
            painter.drawImage(x, y, picture(size, pose));
            x += 96;
        }
        y += static_cast<int>(size * owlHeadroom) + 8;
    }
    return image;
}

/// What the owl does from `start` on, every `step`.
QImage strip(bool awake, double move, std::chrono::milliseconds start, std::chrono::milliseconds step,
    int count, bool wakes = false)
{
    ManualTime time;
    QList<double> dice { 0, move, 0, 0 };
    OwlMotion motion(time, time, [&dice] { return dice.isEmpty() ? 0.999 : dice.takeFirst(); });
    motion.setAwake(awake);
    motion.setActive(true);
    time.advance(start);
    if (wakes)
        motion.setAwake(!awake);
    constexpr int size = 72;
    QImage image(count * (size + 4), 84, QImage::Format_RGB32);
    image.fill(QColor(30, 30, 30));
    QPainter painter(&image);
    for (int frame = 0; frame < count; ++frame) {
        painter.drawImage(frame * (size + 4), 1, picture(size, motion.pose()));
        time.advance(step);
    }
    return image;
}

} // namespace

int main(int argc, char* argv[])
{
    const QGuiApplication application(argc, argv);
    const QDir folder(QCoreApplication::arguments().value(1));
    if (argc != 2 || !folder.mkpath(u"."_s))
        return 1;

    const OwlPose awake { .wake = 1 };
    QList<OwlPose> poses { {}, { .breathe = 1, .zRise = 0.6 }, awake };
    for (const auto& pose : { OwlPose { .wake = 1, .blink = 0.5 }, OwlPose { .wake = 1, .blink = 1 },
             OwlPose { .wake = 1, .glance = -1 }, OwlPose { .wake = 1, .glance = 1, .tilt = 13 },
             OwlPose { .wake = 1, .tilt = -13 }, OwlPose { .wake = 1, .hop = 0.5 },
             OwlPose { .wake = 1, .hop = 1.2 }, OwlPose { .wake = 0.5 } })
        poses << pose;
    sheet(poses).save(folder.filePath(u"owl-states.png"_s));

    strip(false, 0, 0ms, 250ms, 18).save(folder.filePath(u"owl-strip-asleep.png"_s));
    strip(false, 0, 400ms, 32ms, 18, true).save(folder.filePath(u"owl-strip-wakes.png"_s));
    strip(true, 0, 1000ms, 32ms, 14, true).save(folder.filePath(u"owl-strip-falls-asleep.png"_s));
    strip(true, 0.1, 1600ms, 16ms, 14).save(folder.filePath(u"owl-strip-blink.png"_s));
    strip(true, 0.3, 1600ms, 64ms, 18).save(folder.filePath(u"owl-strip-glance.png"_s));
    strip(true, 0.7, 1600ms, 80ms, 18).save(folder.filePath(u"owl-strip-tilt.png"_s));
    strip(true, 0.9, 1600ms, 32ms, 18).save(folder.filePath(u"owl-strip-hop.png"_s));
    return 0;
}

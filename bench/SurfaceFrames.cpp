// The whole program, which also prints a line for each frame of its surface: when it was on the screen by the
// monotonic clock, what the main thread has worked since the frame before, both in microseconds, and the
// height of the panel in points.
#include "app/AppDelegate.h"

#include <QGuiApplication>
#include <QQuickWindow>

#include <cstdio>
#include <ctime>

using namespace Qt::StringLiterals;

namespace {

long long microseconds(clockid_t clock)
{
    timespec time {};
    ::clock_gettime(clock, &time);
    return time.tv_sec * 1'000'000LL + time.tv_nsec / 1000;
}

} // namespace

int main(int argc, char* argv[])
{
    if (nimbarrow::preparePlatform())
        return 1;
    const QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(u"Nimbarrow"_s);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    nimbarrow::AppDelegate delegate(nimbarrow::makePlatform());
    if (!delegate.applicationDidFinishLaunching(false))
        return 1;
    for (auto* const window : QGuiApplication::allWindows()) {
        if (auto* const surface = qobject_cast<QQuickWindow*>(window)) {
            // Events, animations and drawing are all the main thread's.
            QObject::connect(surface, &QQuickWindow::frameSwapped, surface, [surface, last = 0LL]() mutable {
                const auto worked = microseconds(CLOCK_THREAD_CPUTIME_ID);
                std::printf(
                    "%lld %lld %d\n", microseconds(CLOCK_MONOTONIC), worked - last, surface->height());
                std::fflush(stdout);
                last = worked;
            });
            return QGuiApplication::exec();
        }
    }
    return 1;
}

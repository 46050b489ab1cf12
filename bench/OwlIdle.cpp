// Prints how much of one processor the owl takes: asleep and awake on an open surface, and on a closed one.
// Run on a display, with the renderer that the program has.

#include "keepawake/KeepAwake.h"
#include "keepawake/OwlMotion.h"
#include "notch/NotchShape.h"
#include "platform/Platform.h"
#include "platform/qt/QtScheduler.h"
#include "platform/qt/SystemClock.h"
#include "support/FakePowerAssertions.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QRandomGenerator>

#include <cstdio>
#include <sys/resource.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace nimbarrow;

namespace {

constexpr auto span = 10s;

double processorSeconds()
{
    rusage usage {};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) { return double(time.tv_sec) + double(time.tv_usec) / 1e6; };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

class Bench {
public:
    Bench()
    {
        m_engine.addImportPath(u"qrc:/qt/qml"_s);
        QQmlComponent component(&m_engine);
        component.setData("import Nimbarrow.KeepAwake; KeepAwakeButton {}", QUrl());
        m_button = qobject_cast<QQuickItem*>(component.createWithInitialProperties({
            { u"keepAwake"_s, QVariant::fromValue(&m_keepAwake) },
            { u"motion"_s, QVariant::fromValue(&m_motion) },
            { u"surface"_s, QVariant::fromValue(m_window.contentItem()) },
            { u"active"_s, true },
        }));
        if (!m_button)
            qFatal("%s", qPrintable(component.errorString()));
        m_window.resize(460, 258);
        m_body.setParentItem(m_window.contentItem());
        m_body.setSize(m_window.size());
        m_button->setParentItem(&m_body);
        m_button->setPosition({ 400, 2 });
        // As the surface does after each frame.
        QObject::connect(&m_window, &QQuickWindow::frameSwapped, &m_body, [this, whole = false]() mutable {
            ++m_frames;
            whole = !whole;
            if (whole)
                m_body.update();
        });
        m_window.show();
    }

    ~Bench() { delete m_button; }
    Q_DISABLE_COPY_MOVE(Bench)

    void run()
    {
        const QList<Case> cases {
            { "open, asleep", [] {} },
            { "open, awake", [this] { m_keepAwake.choose(0); } },
            { "closed, awake", [this] { m_button->setProperty("active", false); } },
            { "closed, asleep", [this] { m_keepAwake.deactivate(); } },
        };
        std::printf("%-16s%12s%12s\n", "owl", "processor %", "frames/s");
        step(cases);
    }

private:
    struct Case {
        const char* name;
        std::function<void()> prepare;
    };

    void measure(const char* name) const
    {
        const auto seconds = std::chrono::duration<double>(span).count();
        std::printf(
            "%-16s%12.2f%12.1f\n", name, 100 * (processorSeconds() - m_before) / seconds, m_frames / seconds);
        std::fflush(stdout);
    }

    void step(QList<Case> rest)
    {
        if (rest.isEmpty()) {
            QCoreApplication::quit();
            return;
        }
        const auto now = rest.takeFirst();
        now.prepare();
        // The jump and the fade are over by then.
        m_timer = m_scheduler.after(2s, [this, now, rest] {
            m_before = processorSeconds();
            m_frames = 0;
            m_timer = m_scheduler.after(span, [this, now, rest] {
                measure(now.name);
                step(rest);
            });
        });
    }

    FakePowerAssertions m_power;
    SystemClock m_clock;
    QtScheduler m_scheduler;
    KeepAwake m_keepAwake { m_power, m_clock, m_scheduler };
    OwlMotion m_motion { m_clock, m_scheduler, [] { return QRandomGenerator::global()->generateDouble(); } };
    QQmlEngine m_engine;
    QQuickWindow m_window;
    NotchShape m_body;
    QQuickItem* m_button = nullptr;
    double m_before = 0;
    int m_frames = 0;
    Timer m_timer;
};

} // namespace

int main(int argc, char* argv[])
{
    preparePlatform();
    const QGuiApplication application(argc, argv);
    Bench bench;
    bench.run();
    return QGuiApplication::exec();
}

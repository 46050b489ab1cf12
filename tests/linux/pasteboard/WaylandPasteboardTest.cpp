#include "linux/pasteboard/WaylandPasteboard.h"

#include "linux/pasteboard/PasteboardContract.h"
#include "linux/pasteboard/WaylandOwner.h"
#include "support/PrivateCompositor.h"

#include <QSignalSpy>
#include <QTest>

#include <csignal>
#include <future>

using namespace Qt::StringLiterals;
using namespace nimbarrow;
using Manner = ClipboardOwner::Manner;

namespace {

class WaylandBed final : public PasteboardBed {
public:
    WaylandBed()
        : PasteboardBed(std::make_unique<PrivateCompositor>())
    {
    }

    std::unique_ptr<SelectionPasteboard> pasteboard(
        const QByteArray& displayName, const PasteboardLimits& limits) const override
    {
        return std::make_unique<WaylandPasteboard>(displayName, limits);
    }
    std::unique_ptr<ClipboardOwner> owner() const override
    {
        return std::make_unique<WaylandOwner>(display->name());
    }
    // A pipe that its owner's death closes looks like one that has everything.
    QList<Manner> silentManners() const override { return { Manner::SilentOnData, Manner::SilentAfterIncr }; }
    void copy(const QByteArray& bytes, const QString& type) const override
    {
        (void)display->run(u"wl-copy"_s, { u"-t"_s, type }, bytes);
    }
    QByteArray paste(const QString& type) const override
    {
        return display->run(u"wl-paste"_s, { u"-n"_s, u"-t"_s, type });
    }
    QByteArray types() const override { return display->run(u"wl-paste"_s, { u"-l"_s }); }
};

} // namespace

class WaylandPasteboardTest final : public PasteboardContract {
    Q_OBJECT

public:
    WaylandPasteboardTest()
        : PasteboardContract([] { return std::make_unique<WaylandBed>(); })
    {
    }

private:
    /// A program that stays.
    static void start(
        QProcess& process, const Fixture& at, const QString& program, const QStringList& arguments)
    {
        process.setProcessEnvironment(at.bed->display->environment());
        process.start(program, arguments);
        QVERIFY(process.waitForStarted());
    }

private Q_SLOTS:
    void neverSeesThePrimarySelection()
    {
        Fixture at(*this);
        (void)at.bed->display->run(u"wl-copy"_s, { u"--primary"_s }, "selected");
        QTRY_COMPARE(at.bed->display->run(u"wl-paste"_s, { u"-n"_s, u"--primary"_s }), "selected"_ba);
        at.bed->copy("copied", u"text/plain"_s);
        QTRY_COMPARE(at.seen, QStringList { u"copied"_s });
        QCOMPARE(at.pasteboard->changeCount(), 1);
    }

    void knowsWhenNothingIsThereAnyMore()
    {
        Fixture at(*this);
        at.bed->copy("copied", u"text/plain"_s);
        QTRY_COMPARE(at.pasteboard->string(), u"copied"_s);
        (void)at.bed->display->run(u"wl-copy"_s, { u"--clear"_s });
        QTRY_COMPARE(at.pasteboard->string(), std::nullopt);
        QCOMPARE(at.seen.size(), 1);
    }

    void aFrozenProgramHoldsUpNobody()
    {
        PasteboardLimits limits;
        limits.stall = std::chrono::milliseconds(200);
        Fixture at(*this, limits);
        // While it makes an image it reads nothing, so the program is frozen by the time that it is asked.
        std::promise<void> allowed;
        at.pasteboard->write({ { {}, {}, [&] {
                                    allowed.get_future().wait();
                                    return "P"_ba;
                                } } });
        QProcess frozen;
        start(frozen, at, u"wl-copy"_s, { u"--foreground"_s, u"-t"_s, u"text/plain"_s, u"frozen"_s });
        QTRY_VERIFY(at.bed->types().contains("text/plain"));
        ::kill(static_cast<pid_t>(frozen.processId()), SIGSTOP);
        allowed.set_value();
        QTRY_COMPARE(at.seen, QStringList { QString() });
        at.bed->copy("later", u"text/plain"_s);
        QTRY_COMPARE(at.seen, (QStringList { QString(), u"later"_s }));
        frozen.kill();
        frozen.waitForFinished();
    }

    void whoeverDoesNotReadHoldsUpNobody()
    {
        Fixture at(*this);
        const QByteArray image(20 << 20, 'P');
        at.pasteboard->write({ { {}, {}, [image] { return image; } } });
        QProcess frozen;
        start(frozen, at, u"sh"_s, { u"-c"_s, u"wl-paste -t image/png | sleep 60"_s });
        QProcess leaving;
        start(leaving, at, u"sh"_s, { u"-c"_s, u"wl-paste -t image/png | head -c 9"_s });
        QVERIFY(leaving.waitForFinished());
        QCOMPARE(leaving.readAllStandardOutput(), "PPPPPPPPP"_ba);
        QVERIFY(at.bed->paste(u"image/png"_s) == image);
        // What it has begun to give is of the write that it was asked for; the rest does not wait for it.
        at.pasteboard->write({ { u"newer"_s, {}, {} } });
        QCOMPARE(at.bed->paste(u"text/plain"_s), "newer"_ba);
        at.pasteboard->handOver();
        frozen.kill();
        frozen.waitForFinished();
    }

    void takesWhatAManagerOffersAnewForItsOwn()
    {
        Fixture at(*this);
        at.pasteboard->write({ { u"ours"_s, {}, {} } });
        ClipboardOwner::Offer offer;
        for (const auto& type : at.bed->types().split('\n')) {
            if (!type.isEmpty())
                offer.emplaceBack(type, "ours");
        }
        WaylandOwner manager(at.bed->display->name());
        manager.copy(offer);
        at.bed->copy("theirs", u"text/plain"_s);
        QTRY_COMPARE(at.seen, QStringList { u"theirs"_s });
        QCOMPARE(manager.dataRequests(), 0);
    }
};

QTEST_GUILESS_MAIN(WaylandPasteboardTest)
#include "WaylandPasteboardTest.moc"

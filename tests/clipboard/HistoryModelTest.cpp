#include "clipboard/BusyCopy.h"
#include "clipboard/HistoryPlay.h"
#include "preferences/L10n.h"
#include "support/Test.h"

#include <QLoggingCategory>
#include <QRandomGenerator>

#include <array>
#include <cerrno>
#include <chrono>
#include <numeric>
#include <sys/stat.h>
#include <thread>

using Disk = HistoryPlay::Disk;

/// Random operations on a history, compared with a simple model of it. NIMBARROW_SEED plays one sequence
/// again, NIMBARROW_SEQUENCES says how many are played.
class HistoryModelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        L10n::setCurrent(L10n::English);
        // A disk that fails is said each time.
        QLoggingCategory::setFilterRules(u"ua.tessak.Nimbarrow.clipboard=false"_s);
        m_isReplay = qEnvironmentVariableIsSet("NIMBARROW_SEED");
        m_firstSeed = m_isReplay ? qEnvironmentVariable("NIMBARROW_SEED").toUInt()
                                 : QRandomGenerator::global()->bounded(1'000'000'000U);
        qInfo("The first seed is %u", m_firstSeed);
    }

    void agreesWithTheModel()
    {
        for (const auto seed : seeds(12))
            play(seed, 200, {});
    }

    void outlivesAKillBeforeEveryCall()
    {
        auto kills = 0;
        for (const auto seed : seeds(4))
            kills += play(seed, 60, { .kills = true });
        QVERIFY2(kills > 0, "No call of the C library was seen.");
        qInfo("%d kills", kills);
    }

    void outlivesKillsOfTheBusyProgram()
    {
        const QTemporaryDir home;
        QRandomGenerator random(m_firstSeed);
        BusyCopy::Recorded recorded;
        for (auto kill = 0; kill < 500; ++kill) {
            BusyCopy copy(home.path(), random.generate());
            // From its first step to its hundredth or so.
            std::this_thread::sleep_for(std::chrono::microseconds(random.bounded(25'000)));
            copy.killHard(recorded);
            const auto complaint = recorded.compare(home.path());
            QVERIFY2(complaint.isEmpty(),
                qPrintable(u"Seed %1, kill %2: %3"_s.arg(m_firstSeed).arg(kill).arg(complaint)));
        }
        qInfo("%d entries came and %d went", recorded.added, recorded.removed);
        QVERIFY(recorded.removed > 100);
    }

    void goesOnAfterAnyFailedCall()
    {
        for (const auto seed : seeds(2)) {
            Disk disk { .error = seed % 3 == 0 ? EIO : ENOSPC };
            const auto calls = play(seed, 40, disk);
            for (disk.firstFailure = 1; disk.firstFailure <= calls; ++disk.firstFailure) {
                // Once, or for a while.
                disk.failures = disk.firstFailure % 2 == 0 ? 1 : 10;
                play(seed, 40, disk);
            }
        }
    }

private:
    [[nodiscard]] QList<quint32> seeds(qsizetype usual) const
    {
        const auto wanted = qEnvironmentVariable("NIMBARROW_SEQUENCES").toUInt();
        QList<quint32> seeds(m_isReplay ? 1 : wanted > 0 ? wanted : usual);
        std::iota(seeds.begin(), seeds.end(), m_firstSeed);
        return seeds;
    }

    /// How many calls changed files.
    static int play(quint32 seed, int count, const Disk& disk)
    {
        static constexpr std::array<mode_t, 3> masks { 0, 022, 077 };
        const auto mask = ::umask(masks.at(seed % masks.size()));
        auto steps = HistoryPlay::steps(seed, count);
        HistoryPlay whole(disk);
        auto complaint = QTest::currentTestFailed() ? QString() : whole.play(steps);
        // What can be left out is left out, so that what is left shows the fault.
        for (auto step = steps.size() - 1; !complaint.isEmpty() && step >= 0; --step) {
            auto fewer = steps;
            fewer.removeAt(step);
            if (const auto other = HistoryPlay(disk).play(fewer); !other.isEmpty()) {
                steps = fewer;
                complaint = other;
            }
        }
        ::umask(mask);
        if (!complaint.isEmpty())
            qWarning("It takes: %ls. Calls from %d on fail: %d",
                qUtf16Printable(HistoryPlay::describe(steps)), disk.firstFailure, disk.failures);
        [&] { QVERIFY2(complaint.isEmpty(), qPrintable(u"Seed %1: %2"_s.arg(seed).arg(complaint))); }();
        return whole.calls();
    }

    bool m_isReplay = false;
    quint32 m_firstSeed = 0;
};

QTEST_GUILESS_MAIN(HistoryModelTest)
#include "HistoryModelTest.moc"

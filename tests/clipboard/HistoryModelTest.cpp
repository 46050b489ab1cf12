#include "clipboard/HistoryPlay.h"
#include "preferences/L10n.h"

#include <QRandomGenerator>
#include <QTest>

#include <cerrno>
#include <numeric>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace nimbarrow;
using Disk = HistoryPlay::Disk;

/// Random operations on a history, compared with a simple model of it. NIMBARROW_SEED plays one sequence
/// again, NIMBARROW_SEQUENCES says how many are played.
class HistoryModelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        L10n::setCurrent(L10n::English);
        m_isReplay = qEnvironmentVariableIsSet("NIMBARROW_SEED");
        m_firstSeed = m_isReplay ? qEnvironmentVariable("NIMBARROW_SEED").toUInt()
                                 : QRandomGenerator::global()->bounded(1'000'000'000U);
        qInfo("The first seed is %u", m_firstSeed);
    }

    void agreesWithTheModel()
    {
        for (const auto seed : seeds(20))
            play(seed, 200, {});
    }

    void outlivesAKillBeforeEveryCall()
    {
        for (const auto seed : seeds(4))
            play(seed, 60, { .kills = true, .onlyNamedFiles = seed % 2 == 0 });
    }

    void goesOnAfterAnyFailedCall()
    {
        for (const auto seed : seeds(2)) {
            Disk disk { .onlyNamedFiles = seed % 2 == 0 };
            HistoryPlay whole(disk);
            QCOMPARE(whole.play(HistoryPlay::steps(seed, 40)), QString());
            disk.error = seed % 3 == 0 ? EIO : ENOSPC;
            for (disk.firstFailure = 1; disk.firstFailure <= whole.calls(); ++disk.firstFailure) {
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

    static QString complaint(quint32 seed, const QList<HistoryPlay::Step>& steps, const Disk& disk)
    {
        static constexpr mode_t masks[] { 0, 022, 077 };
        const auto before = ::umask(masks[seed % std::size(masks)]);
        const auto complaint = HistoryPlay(disk).play(steps);
        ::umask(before);
        return complaint;
    }

    static void play(quint32 seed, int count, const Disk& disk)
    {
        auto steps = HistoryPlay::steps(seed, count);
        if (QTest::currentTestFailed() || complaint(seed, steps, disk).isEmpty())
            return;
        // What can be left out is left out, so that what is left shows the fault.
        for (auto step = steps.size() - 1; step >= 0; --step) {
            auto fewer = steps;
            fewer.removeAt(step);
            if (!complaint(seed, fewer, disk).isEmpty())
                steps = fewer;
        }
        QFAIL(qPrintable(u"Seed %1: %2. It takes: %3. Failures: %4 from call %5 on"_s.arg(seed)
                             .arg(complaint(seed, steps, disk), HistoryPlay::describe(steps))
                             .arg(disk.failures)
                             .arg(disk.firstFailure)));
    }

    bool m_isReplay = false;
    quint32 m_firstSeed = 0;
};

QTEST_GUILESS_MAIN(HistoryModelTest)
#include "HistoryModelTest.moc"

#include "clipboard/HistoryPlay.h"
#include "preferences/L10n.h"
#include "support/Test.h"

#include <QLoggingCategory>
#include <QRandomGenerator>

#include <array>
#include <cerrno>
#include <numeric>
#include <sys/stat.h>

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
        QStringList killed;
        for (const auto seed : seeds(4))
            killed += play(seed, 60, { .kills = true });
        qInfo("%lld kills", static_cast<long long>(killed.size()));
        killed.sort();
        killed.removeDuplicates();
        // Files that change by other calls would change unseen.
        QVERIFY2(m_isReplay || killed.join(u' ') == "chmod fchmod fsync mkdir open rename unlink write"_L1,
            qPrintable(killed.join(u' ')));
    }

    void goesOnAfterAnyFailedCall()
    {
        for (const auto seed : seeds(2)) {
            Disk disk { .error = seed % 3 == 0 ? EIO : ENOSPC };
            const auto calls = play(seed, 40, disk).size();
            // A third of them each time.
            for (disk.firstFailure = 1 + static_cast<int>(seed % 3); disk.firstFailure <= calls;
                 disk.firstFailure += 3) {
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

    /// The calls that changed files.
    static QStringList play(quint32 seed, int count, const Disk& disk)
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

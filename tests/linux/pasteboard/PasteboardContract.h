#pragma once

#include "linux/pasteboard/PasteboardBed.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <functional>
#include <future>
#include <limits>
#include <thread>

namespace nimbarrow {

using namespace Qt::StringLiterals;

/// What holds for the pasteboard on every windowing system; a test of one of them inherits it.
class PasteboardContract : public QObject {
    Q_OBJECT

public:
    using Manner = ClipboardOwner::Manner;
    using MakeBed = std::function<std::unique_ptr<PasteboardBed>()>;

    explicit PasteboardContract(MakeBed makeBed)
        : m_makeBed(std::move(makeBed))
    {
    }

protected:
    struct Fixture {
        explicit Fixture(const PasteboardContract& contract, const PasteboardLimits& limits = {})
            : bed(contract.m_makeBed())
            , pasteboard(bed->pasteboard(bed->display->name(), limits))
        {
            QObject::connect(pasteboard.get(), &Pasteboard::changed, pasteboard.get(),
                [this] { seen << pasteboard->string().value_or(QString()); });
        }

        std::unique_ptr<PasteboardBed> bed;
        std::unique_ptr<SelectionPasteboard> pasteboard;
        QStringList seen;
    };

    const QString utf8 = u"UTF8_STRING"_s;
    const QString png = u"image/png"_s;

private Q_SLOTS:
    void seesWhatOtherProgramsCopy()
    {
        Fixture at(*this);
        QVERIFY(at.pasteboard->works());
        at.bed->copy("Привіт", utf8);
        QTRY_COMPARE(at.seen, QStringList { u"Привіт"_s });
        QCOMPARE(at.pasteboard->types().count(pasteboardtype::string.toString()), 1);
        at.bed->copy("two", utf8);
        QTRY_COMPARE(at.seen, (QStringList { u"Привіт"_s, u"two"_s }));
        const QByteArray image(3 << 20, 'P');
        at.bed->copy(image, png);
        QTRY_COMPARE(at.seen.size(), 3);
        QCOMPARE(at.pasteboard->data(pasteboardtype::png), image);
        QCOMPARE(at.pasteboard->changeCount(), 3);
    }

    void doesNotAnnounceWhatWasThere()
    {
        const auto bed = m_makeBed();
        bed->copy("old", utf8);
        // The tool goes into the background before it owns the clipboard.
        QTRY_COMPARE(bed->paste(utf8), "old"_ba);
        const auto pasteboard = bed->pasteboard(bed->display->name(), {});
        QSignalSpy changed(pasteboard.get(), &Pasteboard::changed);
        bed->copy("new", utf8);
        QTRY_COMPARE(changed.size(), 1);
        QCOMPARE(pasteboard->string(), u"new"_s);
    }

    void neverAsksForASecret_data()
    {
        QTest::addColumn<QByteArray>("mark");
        QTest::addColumn<QString>("type");
        const auto concealed = pasteboardtype::concealed.toString();
        QTest::newRow("KDE") << "x-kde-passwordManagerHint"_ba << concealed;
        QTest::newRow("Nextcloud") << "application/x-nextcloud-talk-secret"_ba << concealed;
        QTest::newRow("viewer") << "Clipboard Viewer Ignore"_ba << pasteboardtype::transient.toString();
    }

    void neverAsksForASecret()
    {
        QFETCH(QByteArray, mark);
        QFETCH(QString, type);
        Fixture at(*this);
        const auto owner = at.bed->owner();
        owner->copy({ { "UTF8_STRING", "hunter2" }, { "image/png", "P" }, { mark, "1" } });
        QTRY_COMPARE(at.seen, QStringList { QString() });
        QVERIFY(at.pasteboard->types().contains(type));
        QCOMPARE(owner->dataRequests(), 0);
    }

    void asksForNothingItDoesNotNeed()
    {
        Fixture at(*this);
        const auto owner = at.bed->owner();
        owner->copy({ { "text/html", "<b>" }, { "UTF8_STRING", "a" }, { "image/png", "P" },
            { "text/uri-list", "file:///a\r\n" } });
        QTRY_COMPARE(at.seen.size(), 1);
        QCOMPARE(at.pasteboard->fileUrls(), QList<QUrl> { QUrl::fromLocalFile(u"/a"_s) });
        QCOMPARE(owner->dataRequests(), 1);
    }

    void survivesAnOwnerThat_data()
    {
        QTest::addColumn<Manner>("manner");
        for (const auto manner : m_makeBed()->silentManners())
            QTest::addRow("%d", static_cast<int>(manner)) << manner;
    }

    void survivesAnOwnerThat()
    {
        QFETCH(Manner, manner);
        PasteboardLimits limits;
        limits.stall = std::chrono::milliseconds(200);
        {
            Fixture at(*this, limits);
            const auto bad = at.bed->owner();
            bad->copy({ { "UTF8_STRING", {} } }, manner, 3);
            QTRY_COMPARE(at.seen, QStringList { QString() });
        }
        // One that may hang for long does so while the next program copies: that copy is not held up behind
        // it.
        limits.stall = std::chrono::minutes(1);
        Fixture at(*this, limits);
        const auto bad = at.bed->owner();
        bad->copy({ { "UTF8_STRING", {} } }, manner, 3);
        at.bed->copy("good", utf8);
        QTRY_VERIFY(at.seen.contains(u"good"_s));
        QTRY_COMPARE(at.pasteboard->string(), u"good"_s);
    }

    void cutsAHugeTextWhileTheLoopGoesOn()
    {
        Fixture at(*this);
        const auto owner = at.bed->owner();
        qint64 longest = 0;
        QElapsedTimer sinceTick;
        QTimer ticks;
        connect(&ticks, &QTimer::timeout, this, [&] { longest = std::max(longest, sinceTick.restart()); });
        sinceTick.start();
        ticks.start(1);
        owner->copy({ { "UTF8_STRING", {} } }, Manner::Polite, 133);
        QTRY_COMPARE(at.seen.size(), 1);
        QCOMPARE(at.seen.first().size(), (4 << 20) / 3);
        QVERIFY(!at.seen.first().contains(QChar::ReplacementCharacter));
        // All of it is taken off the owner's hands.
        QTRY_COMPARE_WITH_TIMEOUT(owner->piecesSent(), 133, 20'000);
        qInfo("longest time between two ticks: %lld ms", longest);
    }

    void fortyQuickCopiesAreFortySnapshots()
    {
        Fixture at(*this);
        const auto owner = at.bed->owner();
        QList<QByteArray> texts;
        QStringList expected;
        for (int number = 0; number < 40; ++number) {
            texts << "text " + QByteArray::number(number);
            expected << QString::fromUtf8(texts.last());
        }
        owner->copyEach(texts);
        QTRY_COMPARE(at.seen.size(), 40);
        QCOMPARE(at.seen, expected);
    }

    void copiesKeepTheirOrderWhoeverAnswersFirst()
    {
        PasteboardLimits limits;
        limits.stall = limits.order = std::chrono::minutes(1);
        Fixture at(*this, limits);
        const auto older = at.bed->owner();
        older->copy({ { "UTF8_STRING", "older" } }, Manner::Busy);
        while (older->dataRequests() == 0)
            std::this_thread::yield();
        // More of them than are read at one time. They outlive the thread that copies them: the thread
        // sanitizer does not see how Qt counts who shares them.
        const QList<QByteArray> texts { "1", "2", "3", "4", "5", "6" };
        const auto newer = at.bed->owner();
        newer->copyEach(texts);
        while (newer->dataRequests() < 6)
            std::this_thread::yield();
        QTest::qWait(50);
        older->goOn();
        QTRY_COMPARE(at.seen.size(), 7);
        QCOMPARE(at.seen, (QStringList { u"older"_s, u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s, u"6"_s }));
    }

    void givesItsTextToOtherPrograms()
    {
        Fixture at(*this);
        at.pasteboard->write({ { u"Ґрунт é"_s, {}, {} } });
        QCOMPARE(at.pasteboard->changeCount(), 1);
        QCOMPARE(at.pasteboard->string(), u"Ґрунт é"_s);
        // At once: a paste keystroke follows a write in the same breath.
        QCOMPARE(at.bed->paste(utf8), "Ґрунт é"_ba);
        for (const auto* target : { "UTF8_STRING", "text/plain", "text/plain;charset=utf-8", "TEXT" })
            QCOMPARE(at.bed->paste(QString::fromLatin1(target)), "Ґрунт é"_ba);
        QCOMPARE(at.bed->paste(u"STRING"_s).right(2), " \xE9"_ba);
        QCOMPARE(at.seen, QStringList());
    }

    void givesItsFilesAndABigImageToOtherPrograms()
    {
        Fixture at(*this);
        QByteArray image(20 << 20, Qt::Uninitialized);
        for (qsizetype place = 0; place < image.size(); ++place)
            image[place] = static_cast<char>(place * 31 >> 7);
        const auto file = QUrl::fromLocalFile(u"/a b.png"_s);
        at.pasteboard->write({ { {}, file, [image] { return image; } } });
        QVERIFY(at.bed->paste(png) == image);
        QCOMPARE(at.bed->paste(u"text/uri-list"_s), "file:///a%20b.png\r\n"_ba);
        QCOMPARE(at.bed->paste(u"x-special/gnome-copied-files"_s), "copy\nfile:///a%20b.png"_ba);
        QVERIFY(!at.bed->types().contains("UTF8_STRING"));

        at.pasteboard->write({ { {}, file, {} }, { {}, QUrl::fromLocalFile(u"/c"_s), {} } });
        QCOMPARE(at.bed->paste(utf8), "/a b.png\n/c"_ba);
        QCOMPARE(at.pasteboard->fileUrls().size(), 2);
        QCOMPARE(at.seen, QStringList());
    }

    void doesNotWaitForAnImageThatASecondWriteReplaces()
    {
        Fixture at(*this);
        std::promise<void> begun;
        std::promise<void> allowed;
        at.pasteboard->write({ { {}, {}, [&] {
                                    begun.set_value();
                                    allowed.get_future().wait();
                                    return "P"_ba;
                                } } });
        begun.get_future().wait();
        // More than one, for each may stand because the machine is busy.
        auto stood = std::numeric_limits<qint64>::max();
        for (int write = 0; write < 5; ++write) {
            QElapsedTimer spent;
            spent.start();
            at.pasteboard->write({ { u"newer"_s, {}, {} } });
            stood = std::min(stood, spent.elapsed());
        }
        allowed.set_value();
        QTRY_COMPARE(at.bed->paste(utf8), "newer"_ba);
        QCOMPARE(at.bed->paste(png), QByteArray());
        QVERIFY2(stood < 200, qPrintable(QString::number(stood)));
    }

    void treatsATooLargeImageAsAbsent()
    {
        PasteboardLimits limits;
        limits.imageBytes = 1000;
        Fixture at(*this, limits);
        const auto owner = at.bed->owner();
        owner->copy({ { "image/png", QByteArray(1001, 'P') }, { "image/jpeg", QByteArray(1000, 'J') } });
        QTRY_COMPARE(at.seen.size(), 1);
        QCOMPARE(at.pasteboard->data(pasteboardtype::png), QByteArray());
        QCOMPARE(at.pasteboard->data(pasteboardtype::jpeg).size(), 1000);
    }

    void refusesAListThatIsTooLong()
    {
        PasteboardLimits limits;
        limits.textBytes = 1000;
        Fixture at(*this, limits);
        const auto owner = at.bed->owner();
        owner->copy(
            { { "text/uri-list", QByteArray("file:///a\r\n").repeated(100) }, { "UTF8_STRING", "/a" } });
        QTRY_COMPARE(at.seen, QStringList { QString() });
        QCOMPARE(at.pasteboard->urls(), QList<QUrl>());
        QCOMPARE(owner->dataRequests(), 1);
    }

    void announcesACopyThatItsOwnWriteOvertook()
    {
        Fixture at(*this);
        const auto owner = at.bed->owner();
        owner->copy({ { "UTF8_STRING", "theirs" } });
        // The main loop stands still, so the copy is read but not yet announced.
        while (owner->dataRequests() == 0)
            std::this_thread::yield();
        at.pasteboard->write({ { u"ours"_s, {}, {} } });
        QTRY_COMPARE(at.seen, QStringList { u"theirs"_s });
        QCOMPARE(at.pasteboard->string(), u"ours"_s);
        QCOMPARE(at.bed->paste(utf8), "ours"_ba);
        // The order of what comes later is not disturbed.
        at.bed->copy("theirs again", utf8);
        QTRY_COMPARE(at.pasteboard->string(), u"theirs again"_s);
    }

    void isSilentWithoutAServer()
    {
        Fixture at(*this);
        at.bed->display->kill();
        QTRY_VERIFY(!at.pasteboard->works());
        QCOMPARE(at.pasteboard->access(), Pasteboard::Access::Denied);
        at.pasteboard->write({ { u"a"_s, {}, {} } });
        QCOMPARE(at.pasteboard->string(), u"a"_s);
        at.pasteboard->handOver();
        QVERIFY(!at.bed->pasteboard(":987654", {})->works());
    }

private:
    MakeBed m_makeBed;
};

} // namespace nimbarrow

#include "linux/pasteboard/X11Pasteboard.h"

#include "linux/pasteboard/ForeignOwner.h"
#include "support/PrivateXServer.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QtEndian>

#include <array>
#include <future>

using namespace Qt::StringLiterals;
using namespace nimbarrow;
using Manner = ForeignOwner::Manner;

namespace {

/// A clipboard manager, as X11's conventions have it. A frozen one says nothing.
class Manager {
public:
    explicit Manager(const QByteArray& display, bool frozen = false)
        : m_connection(display)
        , m_window(m_connection.makeWindow())
    {
        xcb_set_selection_owner(
            m_connection.get(), m_window, m_connection.atom("CLIPBOARD_MANAGER"), XCB_CURRENT_TIME);
        m_connection.sync();
        if (!frozen)
            m_thread = std::thread([this] { serve(); });
    }

    ~Manager()
    {
        m_stop = true;
        if (m_thread.joinable())
            m_thread.join();
    }
    Q_DISABLE_COPY_MOVE(Manager)

    /// What it keeps for programs that end.
    [[nodiscard]] QHash<QString, QByteArray> saved() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_saved;
    }

private:
    using Event = X11PasteboardConnection::Reply<xcb_generic_event_t>;
    using Transfers = std::vector<std::unique_ptr<X11PasteboardTransfer>>;

    Event next()
    {
        while (!m_stop) {
            if (Event event { xcb_poll_for_event(m_connection.get()) })
                return event;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return {};
    }

    void serve()
    {
        while (const auto event = next()) {
            if ((event->response_type & 0x7f) == XCB_SELECTION_REQUEST)
                save(reinterpret_cast<const xcb_selection_request_event_t&>(*event));
        }
    }

    void save(const xcb_selection_request_event_t& request)
    {
        const auto atoms = m_connection.takeProperty(request.requestor, request.property, 4096).bytes;
        Transfers transfers;
        for (qsizetype place = 0; place < atoms.size(); place += 4)
            transfers.push_back(std::make_unique<X11PasteboardTransfer>(m_connection,
                m_connection.atom("CLIPBOARD"), qFromUnaligned<xcb_atom_t>(atoms.constData() + place),
                XCB_CURRENT_TIME, 64 << 20, PasteboardLimits()));
        awaitAll(transfers, &X11PasteboardTransfer::answered);
        // As Xfce's does: the pieces of what is large come only now.
        xcb_set_selection_owner(
            m_connection.get(), m_window, m_connection.atom("CLIPBOARD"), XCB_CURRENT_TIME);
        awaitAll(transfers, &X11PasteboardTransfer::complete);
        const std::scoped_lock lock(m_mutex);
        for (std::size_t index = 0; index < transfers.size(); ++index)
            m_saved.insert(
                m_connection.names(atoms.sliced(qsizetype(index) * 4, 4)).first(), transfers[index]->bytes());
        xcb_selection_notify_event_t reply {};
        reply.response_type = XCB_SELECTION_NOTIFY;
        reply.requestor = request.requestor;
        reply.selection = request.selection;
        reply.target = request.target;
        reply.property = request.property;
        xcb_send_event(m_connection.get(), 0, request.requestor, 0, reinterpret_cast<const char*>(&reply));
        xcb_flush(m_connection.get());
    }

    void awaitAll(const Transfers& transfers, bool (X11PasteboardTransfer::*done)() const)
    {
        xcb_flush(m_connection.get());
        while (!std::all_of(
            transfers.begin(), transfers.end(), [done](const auto& one) { return (*one.*done)(); })) {
            const auto event = next();
            if (!event)
                return;
            for (const auto& transfer : transfers)
                (void)transfer->handle(*event);
            xcb_flush(m_connection.get());
        }
    }

    X11PasteboardConnection m_connection;
    xcb_window_t m_window;
    mutable std::mutex m_mutex;
    QHash<QString, QByteArray> m_saved;
    std::atomic_bool m_stop = false;
    std::thread m_thread;
};

} // namespace

class X11PasteboardTest : public QObject {
    Q_OBJECT

    struct Fixture {
        explicit Fixture(const PasteboardLimits& limits = {})
            : pasteboard(server.displayName(), limits)
        {
            QObject::connect(&pasteboard, &Pasteboard::changed, &pasteboard,
                [this] { seen << pasteboard.string().value_or(QString()); });
        }
        PrivateXServer server;
        X11Pasteboard pasteboard;
        QStringList seen;
    };

private Q_SLOTS:
    void seesWhatOtherProgramsCopy()
    {
        Fixture at;
        QVERIFY(at.pasteboard.works());
        (void)at.server.run(u"xclip"_s, { u"-selection"_s, u"clipboard"_s }, "Привіт");
        QTRY_COMPARE(at.seen, QStringList { u"Привіт"_s });
        QCOMPARE(at.pasteboard.types().count(pasteboardtype::string.toString()), 1);
        (void)at.server.run(u"xsel"_s, { u"-ib"_s }, "two");
        QTRY_COMPARE(at.seen, (QStringList { u"Привіт"_s, u"two"_s }));
        const QByteArray image(3 << 20, 'P');
        (void)at.server.run(u"xclip"_s, { u"-selection"_s, u"clipboard"_s, u"-t"_s, u"image/png"_s }, image);
        QTRY_COMPARE(at.seen.size(), 3);
        QCOMPARE(at.pasteboard.data(pasteboardtype::png), image);
        QCOMPARE(at.pasteboard.changeCount(), 3);
    }

    void doesNotAnnounceWhatWasThere()
    {
        PrivateXServer server;
        (void)server.run(u"xclip"_s, { u"-selection"_s, u"clipboard"_s }, "old");
        // xclip goes into the background before it has claimed the selection.
        QTRY_COMPARE(paste(server, "UTF8_STRING"), "old"_ba);
        X11Pasteboard pasteboard(server.displayName());
        QSignalSpy changed(&pasteboard, &Pasteboard::changed);
        (void)server.run(u"xclip"_s, { u"-selection"_s, u"clipboard"_s }, "new");
        QTRY_COMPARE(changed.size(), 1);
        QCOMPARE(pasteboard.string(), u"new"_s);
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
        Fixture at;
        ForeignOwner owner(at.server.displayName());
        owner.copy({ { "UTF8_STRING", "hunter2" }, { "image/png", "P" }, { mark, "1" } });
        QTRY_COMPARE(at.seen, QStringList { QString() });
        QVERIFY(at.pasteboard.types().contains(type));
        QCOMPARE(owner.dataRequests(), 0);
    }

    void announcesNothingOfASecretThatOvertookItsQuestion()
    {
        Fixture at;
        ForeignOwner owner(at.server.displayName());
        owner.copy({ { "UTF8_STRING", "hunter2" } }, Manner::HurriesOn);
        // The question was meant for the first copy, and the owner of the second one answers it.
        QTRY_COMPARE(owner.dataRequests(), 1);
        QTRY_VERIFY(at.pasteboard.types().contains(pasteboardtype::concealed.toString()));
        QCOMPARE(at.seen, QStringList { QString() });
        // And the answer finds a window, or the owner might not live to be asked by anybody else.
        QCOMPARE(paste(at.server, "UTF8_STRING"), "hunter2"_ba);
        QCOMPARE(owner.errors(), 0);
    }

    void asksForNothingItDoesNotNeed()
    {
        Fixture at;
        ForeignOwner owner(at.server.displayName());
        owner.copy({ { "text/html", "<b>" }, { "UTF8_STRING", "a" }, { "image/png", "P" },
            { "text/uri-list", "file:///a\r\n" } });
        QTRY_COMPARE(at.seen.size(), 1);
        QCOMPARE(at.pasteboard.fileUrls(), QList<QUrl> { QUrl::fromLocalFile(u"/a"_s) });
        QCOMPARE(owner.dataRequests(), 1);
    }

    void survivesAnOwnerThat_data()
    {
        QTest::addColumn<Manner>("manner");
        QTest::newRow("never answers") << Manner::SilentOnTargets;
        QTest::newRow("lists and is silent") << Manner::SilentOnData;
        QTest::newRow("announces pieces and is silent") << Manner::SilentAfterIncr;
        QTest::newRow("dies between pieces") << Manner::DiesInIncr;
    }

    void survivesAnOwnerThat()
    {
        QFETCH(Manner, manner);
        PasteboardLimits limits;
        limits.stall = std::chrono::milliseconds(200);
        Fixture at(limits);
        {
            ForeignOwner bad(at.server.displayName());
            bad.copy({ { "UTF8_STRING", {} } }, manner, 3);
            QTRY_COMPARE(at.seen, QStringList { QString() });
        }
        // A second one hangs while the next program copies: that copy is not held up behind it.
        ForeignOwner bad(at.server.displayName());
        bad.copy({ { "UTF8_STRING", {} } }, manner, 3);
        (void)at.server.run(u"xclip"_s, { u"-selection"_s, u"clipboard"_s }, "good");
        QTRY_VERIFY(at.seen.contains(u"good"_s));
        QTRY_COMPARE(at.pasteboard.string(), u"good"_s);
    }

    void cutsAHugeTextWhileTheLoopGoesOn()
    {
        Fixture at;
        ForeignOwner owner(at.server.displayName());
        qint64 longest = 0;
        QElapsedTimer sinceTick;
        QTimer ticks;
        connect(&ticks, &QTimer::timeout, this, [&] { longest = std::max(longest, sinceTick.restart()); });
        sinceTick.start();
        ticks.start(1);
        owner.copy({ { "UTF8_STRING", {} } }, Manner::Polite, 133);
        QTRY_COMPARE(at.seen.size(), 1);
        QCOMPARE(at.seen.first().size(), (4 << 20) / 3);
        QVERIFY(!at.seen.first().contains(QChar::ReplacementCharacter));
        // All of it is taken off the owner's hands.
        QTRY_COMPARE_WITH_TIMEOUT(owner.piecesSent(), 133, 20'000);
        qInfo("longest time between two ticks: %lld ms", longest);
    }

    void fortyQuickCopiesAreFortySnapshots()
    {
        Fixture at;
        ForeignOwner owner(at.server.displayName());
        QList<QByteArray> texts;
        QStringList expected;
        for (int number = 0; number < 40; ++number) {
            texts << "text " + QByteArray::number(number);
            expected << QString::fromUtf8(texts.last());
        }
        owner.copyEach(texts);
        QTRY_COMPARE(at.seen.size(), 40);
        QCOMPARE(at.seen, expected);
    }

    void givesItsTextToOtherPrograms()
    {
        Fixture at;
        at.pasteboard.write({ { u"Ґрунт é"_s, {}, {} } });
        QCOMPARE(at.pasteboard.changeCount(), 1);
        QCOMPARE(at.pasteboard.string(), u"Ґрунт é"_s);
        // At once: a paste keystroke follows a write in the same breath.
        QCOMPARE(paste(at.server, "UTF8_STRING"), "Ґрунт é"_ba);
        for (const auto target : { "UTF8_STRING", "text/plain", "text/plain;charset=utf-8", "TEXT" })
            QCOMPARE(paste(at.server, target), "Ґрунт é"_ba);
        QCOMPARE(paste(at.server, "STRING").right(2), " \xE9"_ba);
        QVERIFY(paste(at.server, "TARGETS").contains("TIMESTAMP"));
        QCOMPARE(at.seen, QStringList());
    }

    void givesItsFilesAndABigImageToOtherPrograms()
    {
        Fixture at;
        QByteArray image(20 << 20, Qt::Uninitialized);
        for (qsizetype place = 0; place < image.size(); ++place)
            image[place] = static_cast<char>(place * 31 >> 7);
        const auto file = QUrl::fromLocalFile(u"/a b.png"_s);
        at.pasteboard.write({ { {}, file, [image] { return image; } } });
        QVERIFY(paste(at.server, "image/png") == image);
        QCOMPARE(paste(at.server, "text/uri-list"), "file:///a%20b.png\r\n"_ba);
        QCOMPARE(paste(at.server, "x-special/gnome-copied-files"), "copy\nfile:///a%20b.png"_ba);
        QVERIFY(!paste(at.server, "TARGETS").contains("UTF8_STRING"));

        at.pasteboard.write({ { {}, file, {} }, { {}, QUrl::fromLocalFile(u"/c"_s), {} } });
        QCOMPARE(paste(at.server, "UTF8_STRING"), "/a b.png\n/c"_ba);
        QCOMPARE(at.pasteboard.fileUrls().size(), 2);
        QCOMPARE(at.seen, QStringList());
    }

    void handsWhatItHasToTheClipboardManager()
    {
        Fixture at;
        Manager manager(at.server.displayName());
        at.pasteboard.handOver();
        QVERIFY(manager.saved().isEmpty());
        const QByteArray image(3 << 20, 'P');
        at.pasteboard.write({ { u"Ґ"_s, QUrl(u"file:///a"_s), [image] { return image; } } });
        at.pasteboard.handOver();
        QCOMPARE(manager.saved().value(u"UTF8_STRING"_s), "Ґ"_ba);
        QCOMPARE(manager.saved().value(u"text/uri-list"_s), "file:///a\r\n"_ba);
        QVERIFY(manager.saved().value(u"image/png"_s) == image);

        // What is another program's is that program's to hand over.
        const auto before = manager.saved();
        (void)at.server.run(u"xclip"_s, { u"-selection"_s, u"clipboard"_s }, "theirs");
        QTRY_COMPARE(at.pasteboard.string(), u"theirs"_s);
        at.pasteboard.handOver();
        QVERIFY(manager.saved() == before);
    }

    void waitsForNoClipboardManagerForLong()
    {
        Fixture at;
        at.pasteboard.write({ { u"a"_s, {}, {} } });
        at.pasteboard.handOver();
        const Manager frozen(at.server.displayName(), true);
        at.pasteboard.handOver();
        QCOMPARE(paste(at.server, "UTF8_STRING"), "a"_ba);
    }

    void doesNotWaitForAnImageThatASecondWriteReplaces()
    {
        Fixture at;
        std::promise<void> begun;
        std::promise<void> allowed;
        at.pasteboard.write({ { {}, {}, [&] {
                                   begun.set_value();
                                   allowed.get_future().wait();
                                   return "P"_ba;
                               } } });
        begun.get_future().wait();
        QElapsedTimer spent;
        spent.start();
        at.pasteboard.write({ { u"newer"_s, {}, {} } });
        const auto stood = spent.elapsed();
        allowed.set_value();
        QCOMPARE(paste(at.server, "UTF8_STRING"), "newer"_ba);
        QCOMPARE(paste(at.server, "image/png"), QByteArray());
        QVERIFY2(stood < 200, qPrintable(QString::number(stood)));
    }

    void answersSeveralQuestionsAtOnceAndOutlivesWhoAsked()
    {
        Fixture at;
        const QByteArray image(2 << 20, 'P');
        at.pasteboard.write({ { u"text"_s, {}, [image] { return image; } } });
        {
            X11PasteboardConnection other(at.server.displayName());
            auto* const xcb = other.get();
            const auto window = other.makeWindow();
            const auto list = other.atom("LIST");
            const std::array pairs { other.atom("UTF8_STRING"), other.atom("A"), other.atom("audio/x"),
                other.atom("B"), other.atom("image/png"), other.atom("C") };
            xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, window, list, other.atom("ATOM_PAIR"), 32,
                static_cast<uint32_t>(pairs.size()), pairs.data());
            xcb_convert_selection(
                xcb, window, other.atom("CLIPBOARD"), other.atom("MULTIPLE"), list, XCB_CURRENT_TIME);
            xcb_flush(xcb);
            X11PasteboardConnection::Reply<xcb_generic_event_t> event;
            do
                event.reset(xcb_wait_for_event(xcb));
            while (event && (event->response_type & 0x7f) != XCB_SELECTION_NOTIFY);
            QVERIFY(event);
            QCOMPARE(reinterpret_cast<xcb_selection_notify_event_t&>(*event).property, list);
            auto answered = pairs;
            answered[3] = XCB_ATOM_NONE;
            QCOMPARE(other.takeProperty(window, list, 64).bytes,
                QByteArray(reinterpret_cast<const char*>(answered.data()), sizeof answered));
            QCOMPARE(other.takeProperty(window, pairs[1], 64).bytes, "text"_ba);
            // Taking the announcement asks for the first piece, which nobody will be there for.
            QCOMPARE(other.takeProperty(window, pairs[5], 64).type, other.atom("INCR"));
        }
        QVERIFY(paste(at.server, "image/png") == image);
    }

    void treatsATooLargeImageAsAbsent()
    {
        PasteboardLimits limits;
        limits.imageBytes = 1000;
        Fixture at(limits);
        ForeignOwner owner(at.server.displayName());
        owner.copy({ { "image/png", QByteArray(1001, 'P') }, { "image/jpeg", QByteArray(1000, 'J') } });
        QTRY_COMPARE(at.seen.size(), 1);
        QCOMPARE(at.pasteboard.data(pasteboardtype::png), QByteArray());
        QCOMPARE(at.pasteboard.data(pasteboardtype::jpeg).size(), 1000);
    }

    void refusesAListThatIsTooLong()
    {
        PasteboardLimits limits;
        limits.textBytes = 1000;
        Fixture at(limits);
        ForeignOwner owner(at.server.displayName());
        owner.copy(
            { { "text/uri-list", QByteArray("file:///a\r\n").repeated(100) }, { "UTF8_STRING", "/a" } });
        QTRY_COMPARE(at.seen, QStringList { QString() });
        QCOMPARE(at.pasteboard.urls(), QList<QUrl>());
        QCOMPARE(owner.dataRequests(), 1);
    }

    void announcesACopyThatItsOwnWriteOvertook()
    {
        Fixture at;
        ForeignOwner owner(at.server.displayName());
        owner.copy({ { "UTF8_STRING", "theirs" } });
        // The main loop stands still, so the copy is read but not yet announced.
        while (owner.dataRequests() == 0)
            std::this_thread::yield();
        at.pasteboard.write({ { u"ours"_s, {}, {} } });
        QTRY_COMPARE(at.seen, QStringList { u"theirs"_s });
        QCOMPARE(at.pasteboard.string(), u"ours"_s);
        QCOMPARE(paste(at.server, "UTF8_STRING"), "ours"_ba);
    }

    void isSilentWithoutAServer()
    {
        Fixture at;
        at.server.kill();
        QTRY_VERIFY(!at.pasteboard.works());
        at.pasteboard.write({ { u"a"_s, {}, {} } });
        QCOMPARE(at.pasteboard.string(), u"a"_s);
        X11Pasteboard never(":987654");
        QVERIFY(!never.works());
    }

private:
    static QByteArray paste(const PrivateXServer& server, const char* target)
    {
        return server.run(
            u"xclip"_s, { u"-o"_s, u"-selection"_s, u"clipboard"_s, u"-t"_s, QString::fromLatin1(target) });
    }
};

QTEST_GUILESS_MAIN(X11PasteboardTest)
#include "X11PasteboardTest.moc"

#include "linux/pasteboard/X11Pasteboard.h"

#include "linux/pasteboard/ForeignOwner.h"
#include "linux/pasteboard/PasteboardContract.h"
#include "support/PrivateXServer.h"
#include "support/Test.h"

#include <QtEndian>

#include <array>
#include <thread>

using Manner = ForeignOwner::Manner;

namespace {

/// A clipboard manager, as X11's conventions have it.
class Manager {
public:
    explicit Manager(const QByteArray& display)
        : m_connection(display)
        , m_window(m_connection.makeWindow())
    {
        xcb_set_selection_owner(
            m_connection.get(), m_window, m_connection.atom("CLIPBOARD_MANAGER"), XCB_CURRENT_TIME);
        m_connection.sync();
        m_thread = std::thread([this] { serve(); });
    }

    ~Manager()
    {
        m_stop = true;
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

class X11Bed final : public PasteboardBed {
public:
    X11Bed()
        : PasteboardBed(std::make_unique<PrivateXServer>())
    {
    }

    std::unique_ptr<SelectionPasteboard> pasteboard(
        const QByteArray& displayName, const PasteboardLimits& limits) const override
    {
        return std::make_unique<X11Pasteboard>(displayName, limits);
    }
    std::unique_ptr<ClipboardOwner> owner() const override
    {
        return std::make_unique<ForeignOwner>(display->name());
    }
    QList<Manner> silentManners() const override
    {
        return { Manner::SilentOnTargets, Manner::SilentOnData, Manner::SilentAfterIncr, Manner::DiesInIncr };
    }
    void copy(const QByteArray& bytes, const QString& type) const override
    {
        (void)display->run(u"xclip"_s, { u"-selection"_s, u"clipboard"_s, u"-t"_s, type }, bytes);
    }
    QByteArray paste(const QString& type) const override
    {
        return display->run(u"xclip"_s, { u"-o"_s, u"-selection"_s, u"clipboard"_s, u"-t"_s, type });
    }
    QByteArray types() const override { return paste(u"TARGETS"_s); }
};

} // namespace

class X11PasteboardTest final : public PasteboardContract {
    Q_OBJECT

public:
    X11PasteboardTest()
        : PasteboardContract([] { return std::make_unique<X11Bed>(); })
    {
    }

private Q_SLOTS:
    void announcesNothingOfASecretThatOvertookItsQuestion()
    {
        Fixture at(*this);
        ForeignOwner owner(at.bed->display->name());
        owner.copy({ { "UTF8_STRING", "hunter2" } }, Manner::HurriesOn);
        // The question was meant for the first copy, and the owner of the second one answers it.
        QTRY_COMPARE(owner.dataRequests(), 1);
        QTRY_VERIFY(at.pasteboard->types().contains(pasteboardtype::concealed.toString()));
        QCOMPARE(at.seen, QStringList { QString() });
        // And the answer finds a window, or the owner might not live to be asked by anybody else.
        QCOMPARE(at.bed->paste(u"UTF8_STRING"_s), "hunter2"_ba);
        QCOMPARE(owner.errors(), 0);
    }

    void handsWhatItHasToTheClipboardManager()
    {
        Fixture at(*this);
        Manager manager(at.bed->display->name());
        at.pasteboard->handOver();
        QVERIFY(manager.saved().isEmpty());
        const QByteArray image(3 << 20, 'P');
        at.pasteboard->write({ { u"Ґ"_s, QUrl(u"file:///a"_s), [image] { return image; } } });
        at.pasteboard->handOver();
        QCOMPARE(manager.saved().value(u"UTF8_STRING"_s), "Ґ"_ba);
        QCOMPARE(manager.saved().value(u"text/uri-list"_s), "file:///a\r\n"_ba);
        QVERIFY(manager.saved().value(u"image/png"_s) == image);

        // What is another program's is that program's to hand over.
        const auto before = manager.saved();
        at.bed->copy("theirs", u"UTF8_STRING"_s);
        QTRY_COMPARE(at.pasteboard->string(), u"theirs"_s);
        at.pasteboard->handOver();
        QVERIFY(manager.saved() == before);
    }

    void waitsForNoClipboardManagerForLong()
    {
        Fixture at(*this);
        at.pasteboard->write({ { u"a"_s, {}, {} } });
        at.pasteboard->handOver();
        ForeignOwner frozen(at.bed->display->name(), "CLIPBOARD_MANAGER");
        frozen.copy({}, Manner::SilentOnData);
        at.pasteboard->handOver();
        QCOMPARE(at.bed->paste(u"UTF8_STRING"_s), "a"_ba);
    }

    void answersSeveralQuestionsAtOnceAndOutlivesWhoAsked()
    {
        Fixture at(*this);
        const QByteArray image(2 << 20, 'P');
        at.pasteboard->write({ { u"text"_s, {}, [image] { return image; } } });
        {
            X11PasteboardConnection other(at.bed->display->name());
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
        QVERIFY(at.bed->paste(u"image/png"_s) == image);
        QVERIFY(at.bed->paste(u"TARGETS"_s).contains("TIMESTAMP"));
    }
};

QTEST_GUILESS_MAIN(X11PasteboardTest)
#include "X11PasteboardTest.moc"

#include "linux/pasteboard/X11DropReader.h"

#include "linux/pasteboard/ForeignOwner.h"
#include "notch/HoverTrackingView.h"
#include "support/Test.h"
#include "support/X11Main.h"

#include <QQuickWindow>

using Manner = ForeignOwner::Manner;

namespace {

PasteboardLimits impatient()
{
    PasteboardLimits limits;
    limits.stall = std::chrono::milliseconds(300);
    return limits;
}

/// A program from which something is dragged.
class Source {
public:
    explicit Source(const ForeignOwner& owner)
        : m_connection({})
        , m_window(owner.window())
    {
    }

    /// Tells a window what every program tells it over which it drags, then drops there.
    void drop(xcb_window_t window, const QByteArrayList& types)
    {
        // As long as three fit into the message, they stand there.
        std::array<uint32_t, 5> enter { m_window, 5U << 24 };
        if (types.size() > 3) {
            enter[1] |= 1;
            std::vector<xcb_atom_t> atoms;
            for (const auto& type : types)
                atoms.push_back(m_connection.atom(type));
            xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, m_window,
                m_connection.atom("XdndTypeList"), XCB_ATOM_ATOM, 32, static_cast<uint32_t>(atoms.size()),
                atoms.data());
        } else {
            for (qsizetype type = 0; type < types.size(); ++type)
                enter[static_cast<std::size_t>(type) + 2] = m_connection.atom(types[type]);
        }
        send(window, "XdndEnter", enter);
        constexpr uint32_t place = 20U << 16 | 20U;
        send(window, "XdndPosition", { m_window, 0, place, 0, m_connection.atom("XdndActionCopy") });
        send(window, "XdndDrop", { m_window, 0, 0 });
        m_connection.sync();
    }

private:
    void send(xcb_window_t window, const char* what, const std::array<uint32_t, 5>& data)
    {
        xcb_client_message_event_t event {};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = window;
        event.type = m_connection.atom(what);
        std::copy(data.begin(), data.end(), event.data.data32);
        xcb_send_event(m_connection.get(), 0, window, 0, reinterpret_cast<const char*>(&event));
    }

    X11PasteboardConnection m_connection;
    xcb_window_t m_window;
};

} // namespace

class X11DropReaderTest : public QObject {
    Q_OBJECT

    /// A window that takes drops.
    struct Fixture {
        Fixture()
        {
            view.setSize({ 200, 200 });
            view.setDropReader(reader);
            view.onDragEntered = [this] { ++entered; };
            view.onDrop = [this](const PasteboardContent& content) {
                ++drops;
                types = content.types();
                text = content.string();
                image = content.data(pasteboardtype::png);
                files = content.fileUrls();
            };
            window.setFlags(Qt::FramelessWindowHint);
            window.setGeometry(0, 0, 200, 200);
            view.setParentItem(window.contentItem());
            window.show();
        }

        [[nodiscard]] bool appears() { return QTest::qWaitForWindowExposed(&window); }
        [[nodiscard]] xcb_window_t id() const { return static_cast<xcb_window_t>(window.winId()); }

        X11Pasteboard pasteboard { {}, impatient() };
        X11DropReader reader { pasteboard };
        QQuickWindow window;
        HoverTrackingView view;
        int entered = 0;
        int drops = 0;
        QStringList types;
        std::optional<QString> text;
        QByteArray image;
        QList<QUrl> files;
    };

private Q_SLOTS:
    void readsWhatIsDropped()
    {
        Fixture at;
        QVERIFY(at.appears());
        ForeignOwner owner(qgetenv("DISPLAY"), "XdndSelection");
        owner.copy({ { "image/png", {} }, { "text/uri-list", "file:///a\r\n" } }, Manner::Polite, 20);
        Source source(owner);
        source.drop(at.id(), { "image/png" });
        QTRY_COMPARE(at.drops, 1);
        QCOMPARE(at.entered, 1);
        QCOMPARE(at.image.size(), 20 * 3 << 18);
        // A list that is too long for the message.
        source.drop(at.id(), { "a/a", "b/b", "image/png", "text/uri-list" });
        QTRY_COMPARE(at.drops, 2);
        QCOMPARE(at.files, QList { QUrl(u"file:///a"_s) });
        QCOMPARE(owner.dataRequests(), 2);
        // Nothing that is known: nothing is asked for, nothing taken.
        source.drop(at.id(), { "a/a" });
        QTest::qWait(50);
        QCOMPARE(at.drops, 2);
        QCOMPARE(owner.dataRequests(), 2);
    }

    void theLoopGoesOnWhileAProgramIsSilent()
    {
        for (const auto manner : { Manner::SilentOnData, Manner::SilentAfterIncr, Manner::DiesInIncr }) {
            Fixture at;
            QVERIFY(at.appears());
            ForeignOwner owner(qgetenv("DISPLAY"), "XdndSelection");
            owner.copy({ { "image/png", {} } }, manner, 3);
            Source(owner).drop(at.id(), { "image/png" });
            // Seen on the main loop, so nobody waits there.
            QTRY_COMPARE(owner.dataRequests(), 1);
            QCOMPARE(at.drops, 0);
            QTRY_COMPARE(at.drops, 1);
            QCOMPARE(at.image, QByteArray());
            // The next one is a drop like any other.
            ForeignOwner better(qgetenv("DISPLAY"), "XdndSelection");
            better.copy({ { "UTF8_STRING", "text" } });
            Source(better).drop(at.id(), { "UTF8_STRING" });
            QTRY_COMPARE(at.text, u"text"_s);
            QCOMPARE(at.drops, 2);
        }
    }
};

int main(int argc, char** argv)
{
    return runOnPrivateXServer<X11DropReaderTest>(argc, argv);
}

#include "X11DropReaderTest.moc"

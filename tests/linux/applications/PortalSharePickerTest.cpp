#include "linux/applications/PortalSharePicker.h"

#include "support/ManualQueues.h"
#include "support/Portals.h"
#include "support/PrivateBus.h"
#include "support/Test.h"
#include "support/TestFolder.h"

#include <QDBusMetaType>
#include <QDBusUnixFileDescriptor>

using Items = QList<ShareItem>;
using Services = QList<ShareService>;

class SharePortals final : public Portals {
protected:
    Answer hear(const QDBusMessage& question, const QVariantMap& options) override
    {
        const auto arguments = question.arguments();
        QStringList words { question.member() };
        for (const auto& argument : arguments.first(arguments.size() - 1))
            words << told(argument);
        for (auto option = options.begin(); option != options.end(); ++option)
            words << option.key() + u'=' + told(option.value());
        asked << words.join(u'|');
        return { response };
    }

private:
    static QString told(const QVariant& value)
    {
        if (value.canConvert<QDBusUnixFileDescriptor>())
            return name(value.value<QDBusUnixFileDescriptor>());
        if (value.metaType() != QMetaType::fromType<QDBusArgument>())
            return value.toString();
        QStringList names;
        for (const auto& file : qdbus_cast<QList<QDBusUnixFileDescriptor>>(value))
            names << name(file);
        return names.join(u',');
    }

    static QString name(const QDBusUnixFileDescriptor& file)
    {
        return QFile::symLinkTarget(u"/proc/self/fd/%1"_s.arg(file.fileDescriptor())).section(u'/', -1);
    }
};

class PortalSharePickerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_disk = std::make_unique<TestFolder>();
        m_portals = std::make_unique<SharePortals>();
        m_inherited = InheritedState::now();
        m_inherited.umask = 022;
        m_inherited.environment.insert(u"PATH"_s, m_disk->path());
        m_inherited.environment.remove(u"QT_QUICK_BACKEND"_s);
        m_disk->write(u"a ї.odt"_s, "content");
        m_disk->write(u"b.png"_s, "content");
    }

    void cleanup()
    {
        m_picker.reset();
        QDBusConnection::disconnectFromBus(u"portal"_s);
        QDBusConnection::disconnectFromBus(u"program"_s);
    }

    void offersWhatTheDesktopHas_data()
    {
        const Rows<uint, uint, bool, Services, Services> row;
        const Services none;
        const Services mail { ShareService::Email };
        row("nothing", 0U, 0U, false, none, none);
        row("tool", 0U, 0U, true, none, mail);
        row("portals", 1U, 3U, false, mail, mail + Services { ShareService::OpenWith });
        row("portal that does not ask", 0U, 2U, false, none, none);
    }
    void offersWhatTheDesktopHas()
    {
        const auto [email, openUri, tool, forLongText, forFile]
            = Rows<uint, uint, bool, Services, Services>::current();
        if (tool)
            installTool();
        start(email, openUri);
        QCOMPARE(m_picker->services({ QString(10'001, u'x') }), forLongText);
        QCOMPARE(m_picker->services({ file(u"b.png"_s) }), forFile);
        QVERIFY(!m_picker->services({ file(u"b.png"_s), file(u"b.png"_s) }).contains(ShareService::OpenWith));
    }

    void asksThePortals()
    {
        start(3, 4);
        const QUrl web(u"https://example.org/a b?ї"_s);
        const Items files { file(u"a ї.odt"_s), file(u"gone"_s), file(u"b.png"_s) };
        m_picker->share({ u"two\nlines"_s, web }, ShareService::Email);
        m_picker->share(files, ShareService::Email);
        m_picker->share({ web }, ShareService::OpenWith);
        m_queues.runAll();
        m_picker->share({ file(u"b.png"_s) }, ShareService::OpenWith);
        m_queues.runAll();
        QTRY_COMPARE(m_portals->asked.size(), 4);
        m_portals->asked.sort();
        QCOMPARE(m_portals->asked,
            (QStringList { u"ComposeEmail||attachment_fds=a ї.odt,b.png"_s,
                u"ComposeEmail||body=two\nlines\nhttps://example.org/a%20b?%D1%97"_s,
                u"OpenFile||b.png|ask=true"_s, u"OpenURI||https://example.org/a%20b?%D1%97|ask=true"_s }));
        // Gone before its files are open.
        m_picker->share(files, ShareService::Email);
        m_picker.reset();
        QCOMPARE(m_queues.waiting(), 0);
    }

    void startsTheToolWhereThereIsNoPortal_data()
    {
        const Rows<uint, bool> row;
        row("no portal", 0U, false);
        row("portal that refuses", 3U, true);
        row("portal that fails later", 3U, false);
    }
    void startsTheToolWhereThereIsNoPortal()
    {
        const auto [email, refuses] = Rows<uint, bool>::current();
        m_portals->refuses = refuses;
        m_portals->response = 2;
        installTool();
        // As this program sets it for itself.
        qputenv("QT_QUICK_BACKEND", "software");
        start(email, 0);
        m_picker->share({ u"-a 'text'; $HOME\nof two lines"_s, file(u"a ї.odt"_s), file(u"b.png"_s) },
            ShareService::Email);
        m_queues.runAll();
        const QStringList expected { u"--utf8"_s, u"--body"_s, u"-a 'text'; $HOME"_s, u"of two lines"_s,
            u"--attach"_s, m_disk->filePath(u"a ї.odt"_s), u"--attach"_s, m_disk->filePath(u"b.png"_s),
            u"backend ."_s, u"mask 0022"_s, QString() };
        QTRY_COMPARE(QString::fromUtf8(readFile(m_disk->filePath(u"record"_s))), expected.join(u'\n'));
        QCOMPARE(m_portals->asked.size(), email > 0 ? 1 : 0);
    }

private:
    [[nodiscard]] QUrl file(const QString& name) const { return QUrl::fromLocalFile(m_disk->filePath(name)); }

    /// A mail tool that writes down what it was started with.
    void installTool() const
    {
        m_disk->write(u"xdg-email"_s,
            "#!/bin/sh\ncd \"${0%/*}\"\n{ printf '%s\\n' \"$@\"; echo \"backend $QT_QUICK_BACKEND.\";"
            " echo \"mask $(umask)\"; } > part\n/bin/mv part record\n",
            QFile::ExeOwner);
    }

    /// The picker, once the portals of these versions have told what they are.
    void start(uint email, uint openUri)
    {
        m_portals->versions = { { u"Email"_s, email }, { u"OpenURI"_s, openUri } };
        QVERIFY(m_portals->serve(m_bus.address(), u"portal"_s));
        const auto bus = QDBusConnection::connectToBus(m_bus.address(), u"program"_s);
        m_picker = std::make_unique<PortalSharePicker>(m_inherited, bus, m_queues);
        QTRY_COMPARE(m_portals->versionsTold, 2);
        // The answers are on their way.
        QTest::qWait(30);
    }

    PrivateBus m_bus;
    ManualQueues m_queues;
    std::unique_ptr<TestFolder> m_disk;
    std::unique_ptr<SharePortals> m_portals;
    InheritedState m_inherited;
    std::unique_ptr<PortalSharePicker> m_picker;
};

QTEST_GUILESS_MAIN(PortalSharePickerTest)
#include "PortalSharePickerTest.moc"

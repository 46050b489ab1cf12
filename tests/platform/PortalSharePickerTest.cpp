#include "platform/linux/PortalSharePicker.h"

#include "support/ManualQueues.h"
#include "support/PrivateBus.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace nimbarrow;
using Items = QList<ShareItem>;
using Services = QList<ShareService>;

namespace {

const auto path = u"/org/freedesktop/portal/desktop"_s;
const QDBusObjectPath request(u"/org/freedesktop/portal/desktop/request/1"_s);

QString target(const QDBusUnixFileDescriptor& file)
{
    return QFile::symLinkTarget(u"/proc/self/fd/%1"_s.arg(file.fileDescriptor()));
}

} // namespace

/// The portals of one desktop: remembers what they were asked, as lines of text.
class Portals : public QDBusVirtualObject {
public:
    uint email = 0;
    uint openUri = 0;
    bool refuses = false;
    int versions = 0;
    QStringList asked;

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        const auto arguments = message.arguments();
        if (message.member() == "Get"_L1) {
            ++versions;
            const auto version = arguments.at(0) == u"org.freedesktop.portal.Email"_s ? email : openUri;
            return connection.send(version > 0
                    ? message.createReply(QVariant::fromValue(QDBusVariant(version)))
                    : message.createErrorReply(QDBusError::InvalidArgs, u"no such interface"_s));
        }
        asked << describe(message);
        return connection.send(refuses
                ? message.createErrorReply(u"org.freedesktop.portal.Error.Failed"_s, u"no"_s)
                : message.createReply(QVariant::fromValue(request)));
    }

private:
    static QString describe(const QDBusMessage& message)
    {
        const auto arguments = message.arguments();
        auto line = message.member() + u" '"_s + arguments.at(0).toString() + u"'"_s;
        if (message.member() == "OpenURI"_L1)
            line += u' ' + arguments.at(1).toString();
        if (message.member() == "OpenFile"_L1)
            line += u' ' + target(arguments.at(1).value<QDBusUnixFileDescriptor>());
        const auto options = qdbus_cast<QVariantMap>(arguments.constLast());
        for (auto option = options.begin(); option != options.end(); ++option) {
            line += u' ' + option.key() + u'=';
            if (option.key() != "attachment_fds"_L1) {
                line += option.value().toString();
                continue;
            }
            for (const auto& file : qdbus_cast<QList<QDBusUnixFileDescriptor>>(option.value()))
                line += target(file) + u';';
        }
        return line;
    }
};

class PortalSharePickerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_disk = std::make_unique<QTemporaryDir>();
        m_portals = std::make_unique<Portals>();
        m_file = save(u"Звіт за листопад.odt"_s);
        m_otherFile = save(u"other.png"_s);
        QVERIFY(QDir(m_disk->path()).mkdir(u"bin"_s));
        m_inherited = InheritedState::now();
        m_inherited.umask = 022;
        m_inherited.environment.insert(u"PATH"_s, m_disk->filePath(u"bin"_s));
        m_inherited.environment.remove(u"QT_QUICK_BACKEND"_s);
    }

    void cleanup()
    {
        m_picker.reset();
        QDBusConnection::disconnectFromBus(u"portal"_s);
        QDBusConnection::disconnectFromBus(u"program"_s);
    }

    void offersWhatTheDesktopHas_data()
    {
        QTest::addColumn<uint>("email");
        QTest::addColumn<uint>("openUri");
        QTest::addColumn<bool>("tool");
        QTest::addColumn<Services>("text");
        QTest::addColumn<Services>("longText");
        QTest::addColumn<Services>("file");
        const Services none;
        const Services mail { ShareService::Email };
        const Services program { ShareService::OpenWith };
        QTest::newRow("nothing") << 0U << 0U << false << none << none << none;
        QTest::newRow("tool") << 0U << 0U << true << mail << none << mail;
        QTest::newRow("portals") << 1U << 3U << false << mail << mail << mail + program;
        QTest::newRow("portal that does not ask") << 0U << 2U << false << none << none << none;
    }

    void offersWhatTheDesktopHas()
    {
        QFETCH(uint, email);
        QFETCH(uint, openUri);
        QFETCH(bool, tool);
        m_portals->email = email;
        m_portals->openUri = openUri;
        if (tool)
            installTool();
        start();
        QTEST(m_picker->services({ u"text"_s }), "text");
        QTEST(m_picker->services({ QString(10'001, u'x') }), "longText");
        QTEST(m_picker->services({ m_file }), "file");
        QTEST(m_picker->services({ QUrl(u"https://example.org"_s) }), "file");
        QCOMPARE(m_picker->services({ m_file, m_otherFile }).contains(ShareService::OpenWith), false);
    }

    void asksThePortals_data()
    {
        QTest::addColumn<Items>("items");
        QTest::addColumn<ShareService>("service");
        QTest::addColumn<QString>("asked");
        const QUrl web(u"https://example.org/a b?ї"_s);
        QTest::newRow("mail a text") << Items { u"two\nlines"_s } << ShareService::Email
                                     << u"ComposeEmail '' body=two\nlines"_s;
        QTest::newRow("mail a link") << Items { web } << ShareService::Email
                                     << u"ComposeEmail '' body=https://example.org/a%20b?%D1%97"_s;
        QTest::newRow("mail files") << Items { QUrl(u"1"_s), QUrl(u"gone"_s), QUrl(u"2"_s) }
                                    << ShareService::Email << u"ComposeEmail '' attachment_fds=1;2;"_s;
        QTest::newRow("open a link with") << Items { web } << ShareService::OpenWith
                                          << u"OpenURI '' https://example.org/a%20b?%D1%97 ask=true"_s;
        QTest::newRow("open a file with")
            << Items { QUrl(u"1"_s) } << ShareService::OpenWith << u"OpenFile '' 1 ask=true"_s;
    }

    void asksThePortals()
    {
        QFETCH(Items, items);
        QFETCH(ShareService, service);
        QFETCH(QString, asked);
        m_portals->email = 3;
        m_portals->openUri = 4;
        start();
        // The files have other names in each run.
        for (auto& item : items) {
            if (item == ShareItem(QUrl(u"1"_s)))
                item = m_file;
            else if (item == ShareItem(QUrl(u"2"_s)))
                item = m_otherFile;
            else if (item == ShareItem(QUrl(u"gone"_s)))
                item = QUrl::fromLocalFile(m_disk->filePath(u"gone"_s));
        }
        if (asked.contains(" 1 "_L1))
            asked.replace(u" 1 "_s, u' ' + m_file.toLocalFile() + u' ');
        asked.replace(u"1;2;"_s, m_file.toLocalFile() + u';' + m_otherFile.toLocalFile() + u';');
        m_picker->share(items, service);
        m_queues.runAll();
        QTRY_COMPARE(m_portals->asked, QStringList { asked });
    }

    void startsTheToolWhereThereIsNoPortal_data()
    {
        QTest::addColumn<bool>("portalRefuses");
        QTest::newRow("no portal") << false;
        QTest::newRow("portal that refuses") << true;
    }

    void startsTheToolWhereThereIsNoPortal()
    {
        QFETCH(bool, portalRefuses);
        m_portals->email = portalRefuses ? 3 : 0;
        m_portals->refuses = true;
        installTool();
        // As this program sets them for itself.
        qputenv("QT_QUICK_BACKEND", "software");
        start();
        m_picker->share({ u"-a 'text'; $HOME\nof two lines"_s, m_file, m_otherFile }, ShareService::Email);
        m_queues.runAll();
        const QStringList expected { u"--utf8"_s, u"--body"_s, u"-a 'text'; $HOME"_s, u"of two lines"_s,
            u"--attach"_s, m_file.toLocalFile(), u"--attach"_s, m_otherFile.toLocalFile(), u"backend ."_s,
            u"mask 0022"_s, QString() };
        QTRY_COMPARE(readTool(), expected.join(u'\n'));
        QCOMPARE(m_portals->asked.size(), portalRefuses ? 1 : 0);
    }

private:
    [[nodiscard]] QUrl save(const QString& name) const
    {
        QFile file(m_disk->filePath(name));
        if (!file.open(QFile::WriteOnly) || file.write("content") != 7)
            qFatal("The disk is full.");
        return QUrl::fromLocalFile(file.fileName());
    }

    /// A mail tool that writes down what it was started with.
    void installTool() const
    {
        QFile tool(m_disk->filePath(u"bin/xdg-email"_s));
        QVERIFY(tool.open(QFile::WriteOnly));
        const auto record = QFile::encodeName(m_disk->filePath(u"record"_s));
        tool.write("#!/bin/sh\n{ printf '%s\\n' \"$@\"; echo \"backend $QT_QUICK_BACKEND.\";"
                   " echo \"mask $(umask)\"; } > "
            + record + ".part\n/bin/mv " + record + ".part " + record + '\n');
        QVERIFY(tool.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }

    [[nodiscard]] QString readTool() const
    {
        QFile record(m_disk->filePath(u"record"_s));
        return record.open(QFile::ReadOnly) ? QString::fromUtf8(record.readAll()) : QString();
    }

    /// The picker, once the portals have told what they are.
    void start()
    {
        auto portal = QDBusConnection::connectToBus(m_bus.address(), u"portal"_s);
        QVERIFY(portal.registerVirtualObject(path, m_portals.get()));
        QVERIFY(portal.registerService(u"org.freedesktop.portal.Desktop"_s));
        const auto bus = QDBusConnection::connectToBus(m_bus.address(), u"program"_s);
        m_picker = std::make_unique<PortalSharePicker>(m_inherited, bus, m_queues);
        QTRY_COMPARE(m_portals->versions, 2);
        // The answers are on their way.
        QTest::qWait(30);
    }

    PrivateBus m_bus;
    ManualQueues m_queues;
    std::unique_ptr<QTemporaryDir> m_disk;
    std::unique_ptr<Portals> m_portals;
    InheritedState m_inherited;
    QUrl m_file;
    QUrl m_otherFile;
    std::unique_ptr<PortalSharePicker> m_picker;
};

QTEST_GUILESS_MAIN(PortalSharePickerTest)
#include "PortalSharePickerTest.moc"

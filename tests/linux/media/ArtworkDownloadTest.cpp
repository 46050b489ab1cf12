#include "linux/media/ArtworkDownload.h"

#include "linux/media/PublicAddress.h"
#include "support/Test.h"

#include <QProcess>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>
#include <QTcpServer>

#include <arpa/inet.h>
#include <future>
#include <netdb.h>

namespace {

/// What is said of an address that is written down.
bool says(bool (*question)(const sockaddr&), const char* text)
{
    addrinfo numeric {};
    numeric.ai_flags = AI_NUMERICHOST;
    addrinfo* found = nullptr;
    if (::getaddrinfo(text, nullptr, &numeric, &found) != 0)
        qFatal("No address: %s", text);
    const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> owned(found, &::freeaddrinfo);
    return question(*found->ai_addr);
}

bool isFirstLoopback(const sockaddr& address)
{
    return address.sa_family == AF_INET
        && reinterpret_cast<const sockaddr_in&>(address).sin_addr.s_addr == ::htonl(INADDR_LOOPBACK);
}

QByteArray answer(const QByteArray& head, const QByteArray& contents = {})
{
    return "HTTP/1.1 " + head + "\r\nContent-Length: " + QByteArray::number(contents.size())
        + "\r\nConnection: close\r\n\r\n" + contents;
}

/// A server on this machine that is trusted by the name of localhost.
class Server {
public:
    Server()
    {
        QProcess::execute(u"openssl"_s,
            { u"req"_s, u"-x509"_s, u"-newkey"_s, u"ec"_s, u"-pkeyopt"_s, u"ec_paramgen_curve:prime256v1"_s,
                u"-nodes"_s, u"-days"_s, u"2"_s, u"-subj"_s, u"/CN=localhost"_s, u"-addext"_s,
                u"subjectAltName=DNS:localhost"_s, u"-keyout"_s, folder.filePath(u"key"_s), u"-out"_s,
                folder.filePath(u"certificate"_s), u"-batch"_s });
        auto configuration = QSslConfiguration::defaultConfiguration();
        QFile key(folder.filePath(u"key"_s));
        if (!key.open(QIODevice::ReadOnly))
            qFatal("There is no key.");
        configuration.setPrivateKey(QSslKey(&key, QSsl::Ec));
        configuration.setLocalCertificateChain(QSslCertificate::fromPath(folder.filePath(u"certificate"_s)));
        server.setSslConfiguration(configuration);
        if (!server.listen(QHostAddress::LocalHost) || !other.listen(QHostAddress(u"127.0.0.2"_s)))
            qFatal("The servers cannot listen.");
        QObject::connect(&server, &QSslServer::pendingConnectionAvailable, &server, [this] {
            auto* const socket = server.nextPendingConnection();
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                const auto request = socket->readAll();
                requests << request;
                const auto path = request.split(' ').value(1);
                if (answers.contains(path)) {
                    socket->write(answers.value(path));
                    socket->disconnectFromHost();
                }
            });
        });
        QObject::connect(&other, &QTcpServer::newConnection, &other, [this] { ++strayConnections; });
    }

    [[nodiscard]] QByteArray authorities() const { return folder.filePath(u"certificate"_s).toLocal8Bit(); }
    [[nodiscard]] QByteArray at(const QByteArray& host) const
    {
        return "https://" + host + ':' + QByteArray::number(server.serverPort());
    }

    /// What is got from a path of this server, while it goes on serving.
    [[nodiscard]] QByteArray download(const ArtworkDownload& download, const QByteArray& address)
    {
        const std::atomic<bool> cancelled = false;
        auto got = std::async(
            std::launch::async, [&] { return download.run(QUrl::fromEncoded(address), cancelled); });
        if (!QTest::qWaitFor(
                [&] { return got.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }, 30'000))
            qFatal("The download does not end.");
        return got.get();
    }

    QTemporaryDir folder;
    QSslServer server;
    /// Nobody may come here.
    QTcpServer other;
    int strayConnections = 0;
    QHash<QByteArray, QByteArray> answers;
    QByteArrayList requests;
};

} // namespace

class ArtworkDownloadTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void onlyTheInternetIsPublic_data()
    {
        const Rows<bool> row;
        for (const auto* const address : { "1.1.1.1", "8.8.8.8", "9.255.255.255", "11.0.0.0",
                 "100.63.255.255", "100.128.0.0", "126.255.255.255", "128.0.0.0", "169.253.255.255",
                 "172.15.255.255", "172.32.0.0", "192.0.1.0", "192.167.255.255", "192.169.0.0",
                 "198.17.255.255", "198.20.0.0", "223.255.255.255", "2000::1", "2001:200::1",
                 "2606:4700::1111", "2a00:1450::5", "3ffe:ffff::1", "::ffff:8.8.8.8", "64:ff9b::8.8.8.8" })
            row(address, true);
        for (const auto* const address : { "0.0.0.0", "0.255.255.255", "10.0.0.1", "10.255.255.255",
                 "100.64.0.0", "100.127.255.255", "127.0.0.1", "127.255.255.255", "169.254.169.254",
                 "172.16.0.1", "172.31.255.255", "192.0.0.1", "192.0.2.1", "192.88.99.1", "192.168.1.1",
                 "198.18.0.1", "198.19.255.255", "198.51.100.1", "203.0.113.1", "224.0.0.251",
                 "239.255.255.255", "240.0.0.1", "255.255.255.255", "::", "::1", "::8.8.8.8",
                 "::ffff:127.0.0.1", "::ffff:192.168.1.1", "::ffff:0:8.8.8.8", "64:ff9b::10.0.0.1",
                 "64:ff9b::127.0.0.1", "64:ff9b:1::8.8.8.8", "100::1", "1fff:ffff::1", "2001::1", "2001:2::1",
                 "2001:20::1", "2001:1ff::1", "2001:db8::1", "2002:808:808::1", "3fff::1", "3fff:fff::1",
                 "4000::1", "5f00::1", "fc00::1", "fdff::1", "fe80::1", "fec0::1", "ff02::fb" })
            row(address, false);
    }
    void onlyTheInternetIsPublic()
    {
        const auto [isPublic] = Rows<bool>::current();
        QCOMPARE(says(isPublicAddress, QTest::currentDataTag()), isPublic);
    }

    void ownNetworksAreKnown()
    {
        QVERIFY(says(isInOwnNetwork, "127.0.0.1"));
        QVERIFY(says(isInOwnNetwork, "127.1.2.3"));
        QVERIFY(says(isInOwnNetwork, "::ffff:127.0.0.1"));
        QVERIFY(!says(isInOwnNetwork, "198.51.100.77"));
        QVERIFY(isInOwnNetwork(sockaddr {}));
        QVERIFY(!isPublicAddress(sockaddr {}));
    }

    void picturesComeAsToAStranger()
    {
        // Somebody's proxy and cookies are theirs.
        qputenv("https_proxy", "http://127.0.0.2:" + QByteArray::number(m_server.other.serverPort()));
        m_server.answers["/1"] = answer("302 Found\r\nSet-Cookie: a=b; Path=/\r\nLocation: /2");
        m_server.answers["/2"] = answer("301 Moved\r\nLocation: " + m_server.at("localhost") + "/3");
        m_server.answers["/3"] = answer("307 Again\r\nLocation: /4");
        m_server.answers["/4"] = answer("200 OK", "picture");
        QCOMPARE(m_server.download(m_download, m_server.at("localhost") + "/1"), "picture");
        QCOMPARE(m_server.requests.size(), 4);
        for (const auto& request : std::as_const(m_server.requests)) {
            auto lines = request.trimmed().split('\n');
            lines.removeFirst();
            for (const auto& line : std::as_const(lines)) {
                const auto name = line.split(':').value(0).toLower();
                QVERIFY2(name == "host" || name == "accept" || name == "user-agent", line.constData());
            }
        }
        qunsetenv("https_proxy");
    }

    void whatItMayNotGetItDoesNotGet_data()
    {
        const Rows<QByteArray, QByteArray, int> row;
        const auto own = m_server.at("localhost");
        const auto stray = "127.0.0.2:" + QByteArray::number(m_server.other.serverPort());
        const auto whole = answer("200 OK", "picture");
        const auto redirection = [](const QByteArray& to) { return answer("302 Found\r\nLocation: " + to); };
        row("no TLS", whole, "http://" + stray + "/x", 0);
        row("another protocol", whole, "ftp://" + stray + "/x", 0);
        row("a file", whole, "file:///etc/passwd", 0);
        row("another address", whole, "https://" + stray + "/x", 0);
        row("another address, written as a number", whole,
            "https://2130706434:" + stray.split(':').value(1) + "/x", 0);
        row("a name for an address", whole, m_server.at("127.0.0.1") + "/x", 0);
        row("with a password", whole, QByteArray(own).replace("https://", "https://me:secret@") + "/x", 0);
        row("sent to no TLS", redirection("http://" + stray), own + "/x", 1);
        row("sent to another address", redirection("https://" + stray), own + "/x", 1);
        row("sent to a file", redirection("file:///etc/passwd"), own + "/x", 1);
        row("sent on with a password", redirection("https://me:secret@" + stray), own + "/x", 1);
        row("sent in a circle", redirection("/x"), own + "/x", 4);
        row("asked for a password", answer("401 No\r\nWWW-Authenticate: Basic realm=\"x\"", "picture"),
            own + "/x", 1);
        row("asked for the user's ticket",
            answer("401 No\r\nWWW-Authenticate: Negotiate\r\nWWW-Authenticate: NTLM", "picture"), own + "/x",
            1);
        row("asked for it by a proxy", answer("407 No\r\nProxy-Authenticate: NTLM", "picture"), own + "/x",
            1);
        row("not found", answer("404 Not Found", "picture"), own + "/x", 1);
        row("said to be too large",
            "HTTP/1.1 200 OK\r\nContent-Length: 4194305\r\nConnection: close\r\n\r\n" + QByteArray(1000, 'x'),
            own + "/x", 1);
        row("too large", "HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n" + QByteArray(4'194'305, 'x'),
            own + "/x", 1);
    }
    void whatItMayNotGetItDoesNotGet()
    {
        const auto [reply, address, requests] = Rows<QByteArray, QByteArray, int>::current();
        m_server.requests.clear();
        m_server.answers["/x"] = reply;
        QCOMPARE(m_server.download(m_download, address), "");
        QCOMPARE(m_server.requests.size(), requests);
        QCOMPARE(m_server.strayConnections, 0);
    }

    void largestPictureComes()
    {
        const QByteArray picture(ArtworkDownload::largest, 'x');
        m_server.answers["/large"] = answer("200 OK", picture);
        QCOMPARE(m_server.download(m_download, m_server.at("localhost") + "/large").size(), picture.size());
    }

    void strangersAreNotTrustedAndThisMachineIsNotPublic()
    {
        m_server.requests.clear();
        m_server.answers["/4"] = answer("200 OK", "picture");
        const auto address = m_server.at("localhost") + "/4";
        QCOMPARE(m_server.download(ArtworkDownload(isFirstLoopback, {}), address), "");
        int asked = 0;
        const ArtworkDownload refused(
            [&asked](const sockaddr&) {
                ++asked;
                return false;
            },
            m_server.authorities());
        QCOMPARE(m_server.download(refused, address), "");
        QVERIFY(asked > 0);
        QCOMPARE(m_server.download(ArtworkDownload(), address), "");
        QCOMPARE(m_server.requests.size(), 0);
    }

    void cancelledDownloadEnds()
    {
        m_server.requests.clear();
        std::atomic<bool> cancelled = false;
        const auto address = m_server.at("localhost") + "/silence";
        auto got = std::async(
            std::launch::async, [&] { return m_download.run(QUrl::fromEncoded(address), cancelled); });
        QTRY_COMPARE(m_server.requests.size(), 1);
        cancelled = true;
        QTRY_VERIFY(got.wait_for(std::chrono::seconds(0)) == std::future_status::ready);
        QCOMPARE(got.get(), "");
    }

private:
    Server m_server;
    const ArtworkDownload m_download { isFirstLoopback, m_server.authorities() };
};

QTEST_GUILESS_MAIN(ArtworkDownloadTest)
#include "ArtworkDownloadTest.moc"

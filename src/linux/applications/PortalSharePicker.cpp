#include "linux/applications/PortalSharePicker.h"

#include "linux/applications/StartProgram.h"
#include "linux/session/BusCalls.h"
#include "platform/WorkQueue.h"

#include <QDBusMetaType>
#include <QDBusReply>
#include <QDBusUnixFileDescriptor>
#include <QDBusVariant>
#include <QFile>
#include <QLoggingCategory>

#include <fcntl.h>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

Q_LOGGING_CATEGORY(sharing, "nimbarrow.share")

const QString portal = u"org.freedesktop.portal.Desktop"_s;
const QString portalPath = u"/org/freedesktop/portal/desktop"_s;
const QString emailInterface = u"org.freedesktop.portal.Email"_s;
const QString openInterface = u"org.freedesktop.portal.OpenURI"_s;

// Earlier ones open with the default program, whatever they are asked.
constexpr uint firstThatAsks = 3;
// The tool makes one argument of it for the mail program, in which a character may take nine bytes.
constexpr qsizetype longestToolText = 10'000;

QDBusMessage question(const QString& interface, const QString& method)
{
    return QDBusMessage::createMethodCall(portal, portalPath, interface, method);
}

/// The texts and links, one a line.
QString bodyOf(const QList<ShareItem>& items)
{
    QStringList lines;
    for (const auto& item : items) {
        if (const auto* const text = std::get_if<QString>(&item))
            lines << *text;
        else if (const auto& url = std::get<QUrl>(item); !url.isLocalFile())
            lines << url.toString(QUrl::FullyEncoded);
    }
    return lines.join(u'\n');
}

QStringList filesOf(const QList<ShareItem>& items)
{
    QStringList paths;
    for (const auto& item : items) {
        if (const auto* const url = std::get_if<QUrl>(&item); url && url->isLocalFile())
            paths << url->toLocalFile();
    }
    return paths;
}

} // namespace

PortalSharePicker::PortalSharePicker(
    InheritedState inherited, std::optional<QDBusConnection> bus, WorkQueues& queues)
    : m_inherited(std::move(inherited))
    , m_bus(std::move(bus))
    , m_opening(queues.serial(u"ua.tessak.Nimbarrow.share"_s))
{
    qDBusRegisterMetaType<Files>();
    if (!m_bus || !(m_bus->connectionCapabilities() & QDBusConnection::UnixFileDescriptorPassing))
        return;
    askVersion(emailInterface, m_emailVersion);
    askVersion(openInterface, m_openVersion);
}

PortalSharePicker::~PortalSharePicker() = default;

void PortalSharePicker::askVersion(const QString& interface, uint& version)
{
    auto asked = question(u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    asked << interface << u"version"_s;
    callBus(*m_bus, asked, &m_questions, [&version](const QDBusMessage& answer) {
        const QDBusReply<QDBusVariant> reply = answer;
        // An error: this desktop has no such portal.
        if (reply.isValid())
            version = reply.value().variant().toUInt();
    });
}

QList<ShareService> PortalSharePicker::services(const QList<ShareItem>& items) const
{
    if (items.isEmpty())
        return {};
    QList<ShareService> services;
    if (m_emailVersion > 0 || hasMailTool(items))
        services << ShareService::Email;
    if (m_openVersion >= firstThatAsks && items.size() == 1 && std::holds_alternative<QUrl>(items.first()))
        services << ShareService::OpenWith;
    return services;
}

bool PortalSharePicker::hasMailTool(const QList<ShareItem>& items) const
{
    return bodyOf(items).size() <= longestToolText
        && !installedProgram(m_inherited, u"xdg-email"_s).isEmpty();
}

void PortalSharePicker::share(const QList<ShareItem>& items, ShareService service)
{
    if (!services(items).contains(service))
        return;
    if (service == ShareService::OpenWith)
        openWith(std::get<QUrl>(items.first()));
    else if (m_emailVersion > 0)
        composeByPortal(items);
    else
        composeByTool(items);
}

void PortalSharePicker::composeByPortal(const QList<ShareItem>& items)
{
    openFiles(filesOf(items), [this, items](const Files& files) {
        QVariantMap options;
        if (const auto body = bodyOf(items); !body.isEmpty())
            options.insert(u"body"_s, body);
        if (!files.isEmpty())
            options.insert(u"attachment_fds"_s, QVariant::fromValue(files));
        auto asked = question(emailInterface, u"ComposeEmail"_s);
        asked << QString() << options;
        call(asked, [this, items] {
            if (hasMailTool(items))
                composeByTool(items);
        });
    });
}

void PortalSharePicker::composeByTool(const QList<ShareItem>& items) const
{
    QStringList arguments { u"--utf8"_s };
    if (const auto body = bodyOf(items); !body.isEmpty())
        arguments << u"--body"_s << body;
    for (const auto& path : filesOf(items))
        arguments << u"--attach"_s << path;
    if (!startProgram(m_inherited, installedProgram(m_inherited, u"xdg-email"_s), arguments))
        qCWarning(sharing, "xdg-email could not be started");
}

void PortalSharePicker::openWith(const QUrl& url)
{
    const QVariantMap options { { u"ask"_s, true } };
    if (!url.isLocalFile()) {
        auto asked = question(openInterface, u"OpenURI"_s);
        asked << QString() << url.toString(QUrl::FullyEncoded) << options;
        call(asked, {});
        return;
    }
    openFiles({ url.toLocalFile() }, [this, options](const Files& files) {
        if (files.isEmpty())
            return;
        auto asked = question(openInterface, u"OpenFile"_s);
        asked << QString() << QVariant::fromValue(files.first()) << options;
        call(asked, {});
    });
}

void PortalSharePicker::openFiles(const QStringList& paths, std::function<void(const Files&)> opened)
{
    const auto files = std::make_shared<Files>();
    m_opening->run(
        [paths, files] {
            for (const auto& path : paths) {
                // Not to wait for whoever is at the other end of a pipe.
                const int handle
                    = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
                if (handle < 0) {
                    qCWarning(sharing, "A file to share could not be opened");
                    continue;
                }
                QDBusUnixFileDescriptor file;
                file.giveFileDescriptor(handle);
                *files << file;
            }
        },
        &m_questions, [files, opened = std::move(opened)] { opened(*files); });
}

void PortalSharePicker::call(const QDBusMessage& question, std::function<void()> failed)
{
    callBus(*m_bus, question, &m_questions, [failed = std::move(failed)](const QDBusMessage& answer) {
        if (answer.type() != QDBusMessage::ErrorMessage)
            return;
        qCWarning(sharing, "The portal refused: %ls", qUtf16Printable(answer.errorName()));
        if (failed)
            failed();
    });
}

} // namespace nimbarrow

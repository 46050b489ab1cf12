#include "linux/applications/PortalSharePicker.h"

#include "linux/applications/StartProgram.h"
#include "linux/session/PortalRequest.h"
#include "platform/WorkQueue.h"

#include <QDBusMetaType>
#include <QDBusUnixFileDescriptor>
#include <QFile>
#include <QLoggingCategory>

#include <fcntl.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

Q_LOGGING_CATEGORY(sharing, "ua.tessak.Nimbarrow.share")

const QString emailInterface = u"org.freedesktop.portal.Email"_s;
const QString openInterface = u"org.freedesktop.portal.OpenURI"_s;

// Earlier ones open with the default program, whatever they are asked.
constexpr uint firstThatAsks = 3;
// The tool makes one argument of it for the mail program, in which a character may take nine bytes.
constexpr qsizetype longestToolText = 10'000;

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
    for (const auto& [interface, version] :
        { std::pair(emailInterface, &m_emailVersion), std::pair(openInterface, &m_openVersion) })
        askPortalVersion(
            *m_bus, interface, &m_questions, [version = version](uint found) { *version = found; });
}

PortalSharePicker::~PortalSharePicker() = default;

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
        ask(emailInterface, u"ComposeEmail"_s, { QString() }, options, [this, items] {
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
        ask(openInterface, u"OpenURI"_s, { QString(), url.toString(QUrl::FullyEncoded) }, options, {});
        return;
    }
    openFiles({ url.toLocalFile() }, [this, options](const Files& files) {
        if (!files.isEmpty())
            ask(openInterface, u"OpenFile"_s, { QString(), QVariant::fromValue(files.first()) }, options, {});
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

void PortalSharePicker::ask(const QString& interface, const QString& method, const QVariantList& arguments,
    const QVariantMap& options, std::function<void()> failed)
{
    askPortal(*m_bus, interface, method, arguments, options, &m_questions,
        [method, failed = std::move(failed)](const PortalAnswer& answer) {
            if (answer.kind != PortalAnswer::Kind::Failed)
                return;
            qCWarning(sharing, "The portal failed in %ls", qUtf16Printable(method));
            if (failed)
                failed();
        });
}

} // namespace nimbarrow

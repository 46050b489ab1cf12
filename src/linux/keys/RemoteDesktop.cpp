#include "linux/keys/RemoteDesktop.h"

#include "files/PrivateFiles.h"
#include "linux/applications/DesktopApplications.h"
#include "linux/session/BusCalls.h"
#include "linux/session/PortalRequest.h"

#include <QDBusObjectPath>
#include <QFileInfo>
#include <QLoggingCategory>

#include <utility>
#include <xkbcommon/xkbcommon-keysyms.h>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

Q_LOGGING_CATEGORY(typing, "ua.tessak.Nimbarrow.paste")

const QString portalInterface = u"org.freedesktop.portal.RemoteDesktop"_s;

// Earlier ones remember nothing, and would ask at every paste.
constexpr uint firstWithTokens = 2;
constexpr uint keyboards = 1;
constexpr uint untilRevoked = 2;
constexpr qsizetype largestToken = 4096;

} // namespace

RemoteDesktop::RemoteDesktop(std::optional<QDBusConnection> bus, QString tokenFile, WorkQueues& queues)
    : m_bus(std::move(bus))
    , m_tokenFile(std::move(tokenFile))
    , m_files(queues.serial(u"ua.tessak.Nimbarrow.trust"_s))
{
    if (!m_bus)
        return;
    const auto token = std::make_shared<QString>();
    m_files->run(
        [path = m_tokenFile, token] {
            *token = QString::fromUtf8(privatefiles::read(path, largestToken).value_or(QByteArray()));
        },
        &m_questions,
        [this, token] {
            m_token = *token;
            askVersion();
        });
}

RemoteDesktop::~RemoteDesktop()
{
    close();
}

void RemoteDesktop::askVersion()
{
    askPortalVersion(*m_bus, portalInterface, &m_questions, [this](uint version) {
        m_hasPortal = version >= firstWithTokens;
        if (m_hasPortal)
            Q_EMIT changed();
    });
}

RemoteDesktop::State RemoteDesktop::state() const
{
    if (!m_hasPortal)
        return State::Unavailable;
    if (!m_token.isEmpty())
        return State::Trusted;
    return m_isRefused ? State::NotTrusted : State::NotDetermined;
}

void RemoteDesktop::prompt()
{
    if (m_hasPortal && !isTrusted())
        begin([this] { close(); });
}

void RemoteDesktop::type(const QList<int>& chord)
{
    if (!isTrusted())
        return;
    QList<std::pair<int, bool>> keys;
    for (const auto key : chord)
        keys << std::pair(key, true);
    for (auto key = chord.crbegin(); key != chord.crend(); ++key)
        keys << std::pair(*key, false);
    begin([this, keys] { typeNext(keys); });
}

void RemoteDesktop::begin(std::function<void()> begun)
{
    if (std::exchange(m_isBusy, true))
        return;
    askPortal(*m_bus, portalInterface, u"CreateSession"_s, {},
        { { u"session_handle_token"_s, portalToken() } }, &m_questions,
        [this, begun = std::move(begun)](const PortalAnswer& answer) {
            m_session = answer.results.value(u"session_handle"_s).toString();
            if (answer.kind == PortalAnswer::Kind::Granted && !m_session.isEmpty())
                selectKeyboard(begun);
            else
                fail(answer);
        });
}

void RemoteDesktop::selectKeyboard(std::function<void()> begun)
{
    QVariantMap options { { u"types"_s, keyboards }, { u"persist_mode"_s, untilRevoked } };
    if (!m_token.isEmpty())
        options.insert(u"restore_token"_s, m_token);
    askPortal(*m_bus, portalInterface, u"SelectDevices"_s,
        { QVariant::fromValue(QDBusObjectPath(m_session)) }, options, &m_questions,
        [this, begun = std::move(begun)](const PortalAnswer& answer) {
            if (answer.kind == PortalAnswer::Kind::Granted)
                start(begun);
            else
                fail(answer);
        });
}

void RemoteDesktop::start(std::function<void()> begun)
{
    askPortal(*m_bus, portalInterface, u"Start"_s,
        { QVariant::fromValue(QDBusObjectPath(m_session)), QString() }, {}, &m_questions,
        [this, begun = std::move(begun)](const PortalAnswer& answer) {
            const auto granted = answer.results.value(u"devices"_s).toUInt();
            if (answer.kind != PortalAnswer::Kind::Granted || (granted & keyboards) == 0) {
                fail(answer);
                return;
            }
            m_isRefused = false;
            takeToken(answer.results.value(u"restore_token"_s).toString());
            begun();
        });
}

void RemoteDesktop::takeToken(const QString& token)
{
    if (token == m_token)
        return;
    const bool wasTrusted = isTrusted();
    m_token = token;
    m_files->run([path = m_tokenFile, text = token.toUtf8()] {
        const bool isKept = text.isEmpty()
            ? privatefiles::remove(path)
            : privatefiles::makeFolder(QFileInfo(path).path()) && privatefiles::write(path, text);
        if (!isKept)
            qCWarning(typing, "The leave to type could not be kept: the desktop will ask again");
    });
    if (isTrusted() != wasTrusted)
        Q_EMIT changed();
}

void RemoteDesktop::fail(const PortalAnswer& answer)
{
    close();
    // Who only could not be asked has not said no.
    if (answer.kind == PortalAnswer::Kind::Failed) {
        qCWarning(typing, "The desktop's portal does not let the program type");
        return;
    }
    m_isRefused = true;
    takeToken({});
    Q_EMIT changed();
}

void RemoteDesktop::typeNext(QList<std::pair<int, bool>> keys)
{
    if (keys.isEmpty()) {
        close();
        return;
    }
    const auto [key, isDown] = keys.takeFirst();
    auto asked = portalCall(portalInterface, u"NotifyKeyboardKeysym"_s);
    asked << QVariant::fromValue(QDBusObjectPath(m_session)) << QVariantMap() << key << uint(isDown);
    // One after the other, for the session must not end before the last one has been typed.
    callBus(
        *m_bus, asked, &m_questions, [this, keys = std::move(keys)](const QDBusMessage&) { typeNext(keys); });
}

void RemoteDesktop::close()
{
    m_isBusy = false;
    if (m_session.isEmpty())
        return;
    m_bus->send(portalClosing(std::exchange(m_session, {}), u"Session"_s));
}

RemoteDesktopKeystrokes::RemoteDesktopKeystrokes(
    RemoteDesktop& desktop, const DesktopApplications& applications)
    : m_desktop(desktop)
    , m_applications(applications)
{
}

void RemoteDesktopKeystrokes::postPaste()
{
    m_desktop.type(m_applications.isTerminalInFront()
            ? QList<int> { XKB_KEY_Control_L, XKB_KEY_Shift_L, XKB_KEY_v }
            : QList<int> { XKB_KEY_Control_L, XKB_KEY_v });
}

} // namespace nimbarrow

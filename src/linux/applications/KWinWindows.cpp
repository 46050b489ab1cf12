#include "linux/applications/KWinWindows.h"

#include "linux/applications/DesktopEntries.h"
#include "linux/session/BusCalls.h"

#include <QCoreApplication>
#include <QDBusReply>
#include <QLoggingCategory>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

Q_LOGGING_CATEGORY(windows, "ua.tessak.Nimbarrow.applications")

const QString service = u"org.kde.KWin"_s;
const QString scriptName = u"ua.tessak.Nimbarrow"_s;
const QString objectPath = u"/Windows"_s;

/// %1 is the name of our connection, %2 our process: while the panel has the keyboard, the program that it
/// took it from is in front. What is a window now was a client before KWin 6.
constexpr auto script = R"(
function tell(method, ...facts) {
    callDBus("%1", "/Windows", "ua.tessak.Nimbarrow.Windows", method, ...facts);
}
function id(window) {
    return window ? String(window.internalId) : "";
}
function opened(window) {
    tell("opened", id(window), String(window.desktopFileName), String(window.resourceClass), String(window.pid));
}
let last = "";
function activated(window) {
    if (window && !(window.pid == %2 && window.skipTaskbar))
        last = id(window);
    tell("activated", window ? last : "");
}
const windows = workspace.windowList ? workspace.windowList() : workspace.clientList();
windows.forEach(opened);
(workspace.windowAdded || workspace.clientAdded).connect(opened);
(workspace.windowRemoved || workspace.clientRemoved).connect(window => tell("closed", id(window)));
(workspace.windowActivated || workspace.clientActivated).connect(activated);
activated(workspace.activeWindow || workspace.activeClient);
)"_L1;

QDBusMessage scripting(const QString& method)
{
    return QDBusMessage::createMethodCall(service, u"/Scripting"_s, u"org.kde.kwin.Scripting"_s, method);
}

} // namespace

KWinWindows::KWinWindows(const QDBusConnection& bus)
    : KWinWindows(bus, std::make_unique<DesktopEntries>())
{
}

KWinWindows::KWinWindows(const QDBusConnection& bus, std::unique_ptr<DesktopEntries> entries)
    : DesktopApplications(std::move(entries))
    , m_bus(bus)
{
    if (!m_script.open())
        return;
    m_script.write(QString(script)
                       .arg(m_bus.baseService(), QString::number(QCoreApplication::applicationPid()))
                       .toUtf8());
    m_script.close();
    m_bus.registerObject(objectPath, this, QDBusConnection::ExportScriptableInvokables);
    // An answer does not say whose it is in every Qt, so it is the bus that is asked.
    callBus(m_bus, questionToBus(u"GetNameOwner"_s) << service, this, [this](const QDBusMessage& answer) {
        m_kwin = QDBusReply<QString>(answer);
        load();
    });
}

KWinWindows::~KWinWindows()
{
    m_bus.unregisterObject(objectPath);
    unload();
}

void KWinWindows::unload()
{
    auto asked = scripting(u"unloadScript"_s);
    asked << scriptName;
    m_bus.send(asked);
}

void KWinWindows::load()
{
    // One that was left behind when the program was killed keeps its name.
    unload();
    auto asked = scripting(u"loadScript"_s);
    asked << m_script.fileName() << scriptName;
    callBus(m_bus, asked, this, [this](const QDBusMessage& answer) {
        const QDBusReply<int> number = answer;
        if (number.isValid() && number.value() >= 0) {
            run(number.value());
            return;
        }
        m_tellsFront = false;
        qCWarning(windows, "KWin does not tell which program is in front");
    });
}

void KWinWindows::run(int script)
{
    const auto asked = [](const QString& path) {
        return QDBusMessage::createMethodCall(service, path, u"org.kde.kwin.Script"_s, u"run"_s);
    };
    callBus(m_bus, asked(u"/Scripting/Script%1"_s.arg(script)), this,
        [this, older = asked(u"/%1"_s.arg(script))](const QDBusMessage& answer) {
            if (answer.type() == QDBusMessage::ErrorMessage)
                m_bus.send(older);
        });
}

// Anybody on the bus could call.
bool KWinWindows::isFromKWin() const
{
    return !m_kwin.isEmpty() && message().service() == m_kwin;
}

void KWinWindows::opened(
    const QString& id, const QString& desktopFile, const QString& windowClass, const QString& pid)
{
    if (!isFromKWin())
        return;
    m_windows << Window { ++m_lastNumber, id, desktopFile, windowClass, pid.toInt() };
    // KWin 6 has it in front before it is there.
    if (id == m_front)
        bringForward();
}

void KWinWindows::closed(const QString& id)
{
    if (!isFromKWin())
        return;
    m_windows.removeIf([&id](const Window& window) { return window.id == id; });
}

void KWinWindows::activated(const QString& id)
{
    if (!isFromKWin())
        return;
    m_tellsFront = true;
    m_front = id;
    bringForward();
}

void KWinWindows::bringForward()
{
    const auto window = std::ranges::find(m_windows, m_front, &Window::id);
    if (window != m_windows.cend())
        std::rotate(m_windows.begin(), window, std::next(window));
}

std::optional<RunningApplication> KWinWindows::frontmost() const
{
    const auto front = std::ranges::find(m_windows, m_front, &Window::id);
    return front == m_windows.cend() ? std::nullopt : shown(*front);
}

std::optional<RunningApplication> KWinWindows::withProcess(qint32 pid) const
{
    const auto own = std::ranges::find(m_windows, pid, &Window::pid);
    if (pid > 0 && own != m_windows.cend())
        return shown(*own);
    return DesktopApplications::withProcess(pid);
}

void KWinWindows::activate(const RunningApplication& application)
{
    const auto process = processOf(application);
    const auto numbered = std::ranges::find(m_windows, application.handle, &Window::number);
    const auto* const window = process ? windowFor(*process)
        : numbered != m_windows.cend() ? &*numbered
                                       : nullptr;
    if (!window)
        return;
    // As the person who picks the window in the desktop's search does.
    auto asked
        = QDBusMessage::createMethodCall(service, u"/WindowsRunner"_s, u"org.kde.krunner1"_s, u"Run"_s);
    asked << u"0_"_s + window->id << QString();
    m_bus.send(asked);
}

const KWinWindows::Window* KWinWindows::windowFor(qint32 pid) const
{
    for (const auto& program : programsAround(pid)) {
        const auto window = std::ranges::find_if(
            m_windows, [&](const Window& candidate) { return entryOf(candidate) == program; });
        if (window != m_windows.cend())
            return &*window;
    }
    return nullptr;
}

std::optional<DesktopEntry> KWinWindows::entryOf(const Window& window) const
{
    auto entry = entryNamed(window.desktopFile);
    return entry ? entry : entryNamed(window.windowClass);
}

std::optional<RunningApplication> KWinWindows::shown(const Window& window) const
{
    return shownBy(window.number, entryOf(window), window.windowClass);
}

} // namespace nimbarrow

#include "linux/display/DisplayPanels.h"

#include "files/PrivateFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>

using namespace Qt::StringLiterals;

namespace nimbarrow {
namespace {

constexpr qint64 largestDescription = 262'144;
constexpr qint64 largestProperty = 4096;
constexpr auto tallestNotch = 4096U;

QByteArray contents(const QString& path, qint64 limit)
{
    // A pipe or a device of that name would keep the program waiting.
    if (!QFileInfo(path).isFile())
        return {};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    auto bytes = file.read(limit + 1);
    return bytes.size() > limit ? QByteArray() : bytes;
}

QString deviceTreeRoot()
{
    const auto root = u"/sys/firmware/devicetree/base"_s;
    return QFileInfo(root).isDir() ? root : u"/proc/device-tree"_s;
}

// The display controller's node stands directly in the tree or under its system-on-chip node.
int notchHeight(const QString& deviceTree)
{
    for (const auto& parent : { deviceTree + "/soc"_L1, deviceTree }) {
        // A filter of names would be a regular expression, whose library takes half a megabyte.
        for (const auto nodes = QDir(parent).entryList(QDir::Dirs); const auto& node : nodes) {
            if (node != "dcp"_L1 && !node.startsWith("dcp@"_L1))
                continue;
            const auto bytes = contents(parent + u'/' + node + "/apple,notch-height"_L1, largestProperty);
            if (bytes.size() != sizeof(quint32))
                continue;
            const auto height = qFromBigEndian<quint32>(bytes.constData());
            if (height <= tallestNotch)
                return static_cast<int>(height);
        }
    }
    return 0;
}

bool isFileName(const QString& key)
{
    return !key.isEmpty() && !key.contains(u'/') && !key.contains(QChar(0));
}

} // namespace

DisplayPanels::DisplayPanels()
    : DisplayPanels(QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation), deviceTreeRoot())
{
}

DisplayPanels::DisplayPanels(QStringList dataFolders, const QString& deviceTree)
    : m_folders(std::move(dataFolders))
    , m_hiddenRows(notchHeight(deviceTree))
{
    for (auto& folder : m_folders)
        folder += "/Nimbarrow/display-panels"_L1;
    for (const auto names = contents(deviceTree + "/compatible"_L1, largestProperty).split('\0');
         const auto& name : names) {
        if (const auto key = QString::fromUtf8(name); isFileName(key))
            m_compatibles << key;
    }
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &DisplayPanels::readAgain);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &DisplayPanels::readAgain);
    watch();
}

std::optional<QRectF> DisplayPanels::topCutout(const QString& screen, QSize mode) const
{
    // What somebody says of this very screen comes before what is known of machines of this kind.
    QStringList keys;
    if (isFileName(screen))
        keys << screen;
    // The device tree describes the machine, so it says nothing of a monitor plugged into it.
    if (isBuiltIn(screen))
        keys << m_compatibles;
    for (const auto& key : std::as_const(keys)) {
        if (const auto panel = panelFor(key))
            return panel->topCutout(mode, isBuiltIn(screen) ? m_hiddenRows : 0);
    }
    return {};
}

NotchDeclaration DisplayPanels::declare(const QString& screen, QSize mode, const QRect& box)
{
    if (m_folders.isEmpty() || !isFileName(screen))
        return { {}, u"There is no file to describe the screen \"%1\" in."_s.arg(screen) };
    const auto path = m_folders.first() + u'/' + screen + ".json"_L1;
    errno = 0;
    if (!privatefiles::makeFolder(m_folders.first())
        || !privatefiles::write(path, DisplayPanel::json(screen, mode, box))) {
        const std::error_code error(errno != 0 ? errno : EIO, std::generic_category());
        return { {}, path + ": "_L1 + QString::fromLocal8Bit(error.message()) };
    }
    readAgain();
    return { path, {} };
}

bool DisplayPanels::isBuiltIn(const QString& screen) const
{
    return std::ranges::any_of(std::array { "eDP"_L1, "DSI"_L1, "LVDS"_L1 },
        [&screen](QLatin1StringView connector) { return screen.startsWith(connector); });
}

std::optional<DisplayPanel> DisplayPanels::panelFor(const QString& key) const
{
    if (const auto known = m_panels.constFind(key); known != m_panels.cend())
        return *known;
    std::optional<DisplayPanel> panel;
    for (const auto& folder : m_folders) {
        panel = DisplayPanel::fromJson(contents(folder + u'/' + key + ".json"_L1, largestDescription));
        if (panel)
            break;
    }
    m_panels.insert(key, panel);
    return panel;
}

void DisplayPanels::readAgain()
{
    m_panels.clear();
    watch();
    Q_EMIT changed();
}

void DisplayPanels::watch()
{
    // A folder that does not exist yet cannot be watched; the nearest one above it sees it come.
    QStringList wanted;
    for (const auto& folder : std::as_const(m_folders)) {
        auto existing = folder;
        while (existing.size() > 1 && !QFileInfo(existing).isDir())
            existing = QFileInfo(existing).path();
        wanted << existing;
        if (existing != folder)
            continue;
        // Writing into a file that is there changes nothing in its folder.
        for (const auto files = QDir(folder).entryList(QDir::Files); const auto& file : files) {
            if (file.endsWith(".json"_L1))
                wanted << folder + u'/' + file;
        }
    }
    wanted.removeDuplicates();
    const auto watched = m_watcher.directories() + m_watcher.files();
    QStringList stale;
    for (const auto& path : watched) {
        if (!wanted.removeOne(path))
            stale << path;
    }
    if (!stale.isEmpty())
        m_watcher.removePaths(stale);
    if (!wanted.isEmpty())
        m_watcher.addPaths(wanted);
}

} // namespace nimbarrow

#include "linux/calendar/CalendarStorePlugin.h"

#include <QCoreApplication>
#include <QFile>
#include <QLoggingCategory>
#include <QPluginLoader>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

Q_LOGGING_CATEGORY(logPlugin, "ua.tessak.Nimbarrow.calendar.plugin")

/// Beside the program where it was built, in its own folder of the system's where it was installed.
QString pluginPath(const QString& library)
{
    const auto folder = QCoreApplication::applicationDirPath();
    const auto built = folder + u'/' + library + ".so"_L1;
    return QFile::exists(built) ? built
                                : folder + "/" NIMBARROW_PLUGINS_FROM_PROGRAM "/"_L1 + library + ".so"_L1;
}

} // namespace

std::unique_ptr<CalendarStore> CalendarStorePlugin::load(const QString& library, const QString& folder)
{
    QPluginLoader loader(pluginPath(library));
    // The types that GLib's libraries register stay known to it for ever.
    loader.setLoadHints(QLibrary::PreventUnloadHint);
    auto* const plugin = qobject_cast<CalendarStorePlugin*>(loader.instance());
    if (!plugin) {
        qCWarning(logPlugin, "No calendars: %ls", qUtf16Printable(loader.errorString()));
        return nullptr;
    }
    return plugin->makeStore(folder);
}

} // namespace nimbarrow

#include "linux/calendar/CalendarStorePlugin.h"

#include "linux/session/InstalledFile.h"

#include <QLoggingCategory>
#include <QPluginLoader>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

Q_LOGGING_CATEGORY(logPlugin, "ua.tessak.Nimbarrow.calendar.plugin")

} // namespace

std::unique_ptr<Calendars> CalendarStorePlugin::load(const QString& library, const QString& folder)
{
    QPluginLoader loader(installedFile(library + ".so"_L1));
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

#include "nowplaying/NowPlayingApp.h"

#include "platform/Applications.h"
#include "preferences/L10n.h"

namespace nimbarrow {

NowPlayingApp NowPlayingApp::running(qint32 pid, const Applications& applications)
{
    NowPlayingApp app { pid, {}, {}, {} };
    if (const auto found = applications.withProcess(pid)) {
        app.name = found->name;
        app.icon = applications.icon(*found);
        if (!found->identifier.isEmpty())
            app.bundleID = found->identifier;
    }
    if (app.name.isEmpty())
        app.name = L10n::text(L10n::Key::Player);
    return app;
}

} // namespace nimbarrow

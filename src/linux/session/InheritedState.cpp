#include "linux/session/InheritedState.h"

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace nimbarrow {

InheritedState InheritedState::now()
{
    InheritedState state;
    state.environment = QProcessEnvironment::systemEnvironment();
    // These were for the start of this program alone.
    state.environment.remove(u"DESKTOP_STARTUP_ID"_s);
    state.environment.remove(u"XDG_ACTIVATION_TOKEN"_s);
    // It can only be read by setting it.
    state.umask = ::umask(0);
    ::umask(state.umask);
    rlimit core {};
    if (::getrlimit(RLIMIT_CORE, &core) == 0)
        state.coreSize = core.rlim_cur;
    return state;
}

} // namespace nimbarrow

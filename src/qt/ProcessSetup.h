#pragma once

#include <QtGlobal>

#include <algorithm>
#include <sys/resource.h>
#include <sys/stat.h>

/// What is said of the process before there is anything else in it.
namespace nimbarrow::processsetup {

inline void setUnlessSet(const char* variable, const char* value)
{
    if (!qEnvironmentVariableIsSet(variable))
        qputenv(variable, value);
}

/// What the program writes is what the user copied: it is for nobody else. So is what its memory holds, and a
/// crash would put it into a file that outlives the entries, so that may have `coreSize` bytes at most.
inline void keepContentsPrivate(rlim_t coreSize)
{
    ::umask(S_IRWXG | S_IRWXO);
    rlimit core {};
    ::getrlimit(RLIMIT_CORE, &core);
    core.rlim_cur = std::min(coreSize, core.rlim_max);
    ::setrlimit(RLIMIT_CORE, &core);
}

} // namespace nimbarrow::processsetup

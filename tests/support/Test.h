#pragma once

// What nearly every test begins with.
#include "support/Rows.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <sys/resource.h>
#include <utility>

namespace nimbarrow {

/// What this process has had of memory at the most, in megabytes.
inline long peakMemory()
{
    rusage usage {};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

} // namespace nimbarrow

using namespace Qt::StringLiterals;
using namespace nimbarrow;
using namespace std::chrono_literals;

#pragma once

#include <QLoggingCategory>

namespace nimbarrow {

Q_DECLARE_LOGGING_CATEGORY(logNowPlaying)

} // namespace nimbarrow

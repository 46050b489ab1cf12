#include "macos/session/UnifiedLog.h"

#include "macos/session/LogName.h"

#include <QHash>
#include <QString>

#include <mutex>
#include <os/log.h>

namespace nimbarrow::unifiedlog {

namespace {

os_log_t logOf(const LogName& name)
{
    static std::mutex mutex;
    static QHash<QByteArray, os_log_t> logs;
    const std::lock_guard lock(mutex);
    auto& log = logs[name.subsystem + '/' + name.category];
    if (!log)
        log = os_log_create(name.subsystem.constData(), name.category.constData());
    return log;
}

os_log_type_t levelOf(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg: return OS_LOG_TYPE_DEBUG;
    case QtInfoMsg: return OS_LOG_TYPE_INFO;
    case QtWarningMsg: return OS_LOG_TYPE_DEFAULT;
    case QtCriticalMsg: return OS_LOG_TYPE_ERROR;
    case QtFatalMsg: break;
    }
    return OS_LOG_TYPE_FAULT;
}

// Nothing that somebody copied is ever logged, so the lines need not be hidden from who reads the log.
void take(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    auto* const log = logOf(LogName::of(context.category));
    os_log_with_type(log, levelOf(type), "%{public}s", qUtf8Printable(message));
}

} // namespace

void start()
{
    qInstallMessageHandler(take);
}

} // namespace nimbarrow::unifiedlog

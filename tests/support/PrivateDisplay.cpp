#include "support/PrivateDisplay.h"

#include <csignal>
#include <sys/prctl.h>

namespace nimbarrow {

PrivateDisplay::PrivateDisplay()
{
    // A test that crashes must not leave it behind.
    m_process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    m_process.setStandardErrorFile(QProcess::nullDevice());
}

void PrivateDisplay::kill()
{
    m_process.kill();
    m_process.waitForFinished(patience);
}

QByteArray PrivateDisplay::run(
    const QString& program, const QStringList& arguments, const QByteArray& input) const
{
    QProcess process;
    process.setProcessEnvironment(m_environment);
    process.setStandardErrorFile(QProcess::nullDevice());
    // A clipboard tool stays in the background and would keep the pipe open.
    if (!input.isNull())
        process.setStandardOutputFile(QProcess::nullDevice());
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    process.waitForFinished(patience);
    return input.isNull() ? process.readAllStandardOutput() : QByteArray();
}

} // namespace nimbarrow

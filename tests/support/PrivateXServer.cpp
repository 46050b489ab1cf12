#include "support/PrivateXServer.h"

#include "support/RunProgram.h"

#include <QProcessEnvironment>

#include <csignal>
#include <sys/prctl.h>

using namespace Qt::StringLiterals;

namespace nimbarrow {

PrivateXServer::PrivateXServer(const QStringList& extraArgs)
{
    // A test that crashes must not leave its server behind.
    m_process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    m_process.setStandardErrorFile(QProcess::nullDevice());
    m_process.start(u"Xvfb"_s,
        QStringList { u"-displayfd"_s, u"1"_s, u"-nolisten"_s, u"tcp"_s, u"-noreset"_s } + extraArgs);
    QByteArray number;
    while (!number.endsWith('\n') && m_process.waitForReadyRead(patience))
        number += m_process.readAllStandardOutput();
    if (number.endsWith('\n'))
        m_displayName = ':' + number.trimmed();
}

PrivateXServer::~PrivateXServer()
{
    kill();
}

void PrivateXServer::kill()
{
    m_process.kill();
    m_process.waitForFinished(patience);
}

QByteArray PrivateXServer::run(
    const QString& program, const QStringList& arguments, const QByteArray& input) const
{
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DISPLAY"_s, QString::fromLatin1(m_displayName));
    return runProgram(environment, program, arguments, input);
}

} // namespace nimbarrow

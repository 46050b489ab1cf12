#include "support/PrivateXServer.h"

#include <QProcessEnvironment>

#include <csignal>
#include <sys/prctl.h>

using namespace Qt::StringLiterals;

namespace nimbarrow {

PrivateXServer::PrivateXServer(const QByteArray& screen)
{
    // A test that crashes must not leave its server behind.
    m_server.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    m_server.setStandardErrorFile(QProcess::nullDevice());
    m_server.start(u"Xvfb"_s,
        { u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, QString::fromLatin1(screen), u"-nolisten"_s,
            u"tcp"_s, u"-noreset"_s });
    while (m_display.isEmpty() && m_server.waitForReadyRead(20'000)) {
        if (m_server.canReadLine())
            m_display = ":" + m_server.readLine().trimmed();
    }
}

PrivateXServer::~PrivateXServer()
{
    kill();
}

void PrivateXServer::kill()
{
    m_server.kill();
    m_server.waitForFinished(5'000);
}

QByteArray PrivateXServer::run(
    const QString& program, const QStringList& arguments, const QByteArray& input) const
{
    QProcess process;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DISPLAY"_s, QString::fromLatin1(m_display));
    process.setProcessEnvironment(environment);
    process.setStandardErrorFile(QProcess::nullDevice());
    if (!input.isNull())
        process.setStandardOutputFile(QProcess::nullDevice());
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    process.waitForFinished(20'000);
    return input.isNull() ? process.readAllStandardOutput() : QByteArray();
}

} // namespace nimbarrow

#include "support/PrivateXServer.h"

using namespace Qt::StringLiterals;

namespace nimbarrow {
namespace {

constexpr auto patience = 20'000;

}

PrivateXServer::PrivateXServer(const QStringList& extraArgs)
{
    m_process.setStandardErrorFile(QProcess::nullDevice());
    m_process.start(u"Xvfb"_s, QStringList { u"-displayfd"_s, u"1"_s, u"-nolisten"_s, u"tcp"_s } + extraArgs);
    QByteArray number;
    while (!number.endsWith('\n') && m_process.waitForReadyRead(patience))
        number += m_process.readAllStandardOutput();
    if (number.endsWith('\n'))
        m_displayName = ':' + number.trimmed();
}

PrivateXServer::~PrivateXServer()
{
    m_process.terminate();
    if (!m_process.waitForFinished(patience))
        m_process.kill();
    m_process.waitForFinished();
}

} // namespace nimbarrow

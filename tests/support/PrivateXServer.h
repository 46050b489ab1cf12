#pragma once

#include "support/PrivateDisplay.h"

namespace nimbarrow {

/// An X server for one test, on a display number that the server picks.
class PrivateXServer final : public PrivateDisplay {
public:
    explicit PrivateXServer(const QStringList& extraArgs = {})
    {
        const auto arguments = QStringLiteral("-displayfd 1 -nolisten tcp -noreset").split(QLatin1Char(' '));
        m_process.start(QStringLiteral("Xvfb"), arguments + extraArgs);
        while (!m_name.endsWith('\n') && m_process.waitForReadyRead(patience))
            m_name += m_process.readAllStandardOutput();
        m_name = ':' + m_name.trimmed();
        m_environment.insert(QStringLiteral("DISPLAY"), QString::fromLatin1(m_name));
    }
};

} // namespace nimbarrow

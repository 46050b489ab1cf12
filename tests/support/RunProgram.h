#pragma once

#include <QByteArray>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

namespace nimbarrow {

/// Milliseconds until another program is given up.
inline constexpr int patience = 20'000;

/// Runs another program with `input` on its standard input, and gives its output.
inline QByteArray runProgram(const QProcessEnvironment& environment, const QString& program,
    const QStringList& arguments, const QByteArray& input)
{
    QProcess process;
    process.setProcessEnvironment(environment);
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

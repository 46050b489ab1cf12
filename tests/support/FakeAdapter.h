#pragma once

#include "platform/AdapterCommand.h"
#include "platform/AdapterProcess.h"

#include <QByteArrayList>
#include <QPointer>

namespace nimbarrow {

/// A companion program that the test plays.
class FakeAdapterProcess final : public AdapterProcess {
    Q_OBJECT

public:
    void write(const QByteArray& bytes) override { written << bytes; }
    void closeInput() override { isInputClosed = true; }
    void terminate() override { isTerminated = true; }
    void resume() override { isPaused = false; }

    void run() { Q_EMIT launched(4711); }
    void refuseToRun() { Q_EMIT failedToLaunch(QStringLiteral("no")); }
    void say(const QByteArray& bytes)
    {
        isPaused = true;
        Q_EMIT output(bytes);
    }
    void end() { Q_EMIT ended(); }

    QByteArrayList written;
    bool isInputClosed = false;
    bool isTerminated = false;
    /// Has said something, and may say more only when this is false again.
    bool isPaused = false;
};

/// Starts companions for the test to play.
class FakeAdapterProcesses final : public AdapterProcesses {
public:
    [[nodiscard]] std::unique_ptr<AdapterProcess> launch(const ProgramCall& call) override
    {
        calls << call;
        auto process = std::make_unique<FakeAdapterProcess>();
        current = process.get();
        return process;
    }

    QList<ProgramCall> calls;
    /// The one that was started last.
    QPointer<FakeAdapterProcess> current;
};

/// Tells of a companion that is there, until the test takes it away.
class FakeAdapterCommand final : public AdapterCommand {
public:
    [[nodiscard]] std::optional<ProgramCall> find() const override { return call; }

    std::optional<ProgramCall> call = ProgramCall { QStringLiteral("/bin/adapter"), {} };
};

} // namespace nimbarrow

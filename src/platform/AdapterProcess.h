#pragma once

#include "platform/AdapterCommand.h"

#include <QByteArray>
#include <QObject>

#include <memory>

namespace nimbarrow {

/// A program of ours that runs, with a pipe in and a pipe out. What it says of errors goes nowhere.
/// Destroying it ends the program at once.
class AdapterProcess : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// Never waits; dropped when the program does not read what it was given before, or has ended.
    virtual void write(const QByteArray& bytes) = 0;
    /// The program sees the end of its input.
    virtual void closeInput() = 0;
    /// Asks the program to end, and sees to it that it does.
    virtual void terminate() = 0;
    /// Lets the next slice of output come. Until then the program has to wait.
    virtual void resume() = 0;

Q_SIGNALS:
    /// The program runs. Everything else comes after this, or never.
    void launched(qint64 pid);
    /// The program does not run and never did; nothing else comes.
    void failedToLaunch(const QString& why);
    /// A bounded slice of output. One comes, and the next only after `resume`.
    void output(const QByteArray& bytes);
    /// The program is gone, and all of its output has been delivered.
    void ended();
};

/// Port: starts companion programs.
class AdapterProcesses : public Port {
public:
    /// Never null, and nothing is said before this has returned.
    [[nodiscard]] virtual std::unique_ptr<AdapterProcess> launch(const ProgramCall& call) = 0;
};

} // namespace nimbarrow

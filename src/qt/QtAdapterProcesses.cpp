#include "qt/QtAdapterProcesses.h"

#include <QProcess>
#include <QSocketNotifier>
#include <QTimer>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace nimbarrow {
namespace {

constexpr qint64 slice = 65'536;
/// What a program may leave behind in the pipe when it ends. Whoever else holds the pipe is not listened to.
constexpr qint64 mostAfterTheEnd = 16 * slice;
constexpr qint64 mostUnreadInput = 65'536;
constexpr auto patience = std::chrono::seconds(1);
constexpr auto longestDying = std::chrono::seconds(1);

// QProcess would take in whatever comes. Through a pipe of our own the program waits while nobody reads.
class ChildProcess final : public AdapterProcess {
public:
    explicit ChildProcess(const ProgramCall& call)
    {
        m_process.setProgram(call.program);
        m_process.setArguments(call.arguments);
        m_process.setStandardErrorFile(QProcess::nullDevice());
        m_process.setStandardOutputFile(QProcess::nullDevice());
        connect(
            &m_process, &QProcess::started, this, [this] { Q_EMIT launched(m_process.processId()); },
            Qt::QueuedConnection);
        connect(
            &m_process, &QProcess::errorOccurred, this, &ChildProcess::errorOccurred, Qt::QueuedConnection);
        connect(&m_process, &QProcess::finished, this, &ChildProcess::finished, Qt::QueuedConnection);

        std::array<int, 2> ends {};
        if (::pipe(ends.data()) != 0) {
            const auto why = QString::fromLocal8Bit(std::strerror(errno));
            QMetaObject::invokeMethod(
                this, [this, why] { Q_EMIT failedToLaunch(why); }, Qt::QueuedConnection);
            return;
        }
        const auto [ours, theirs] = ends;
        m_pipe = ours;
        for (const auto end : ends)
            ::fcntl(end, F_SETFD, FD_CLOEXEC);
        ::fcntl(ours, F_SETFL, O_NONBLOCK);
        m_notifier = std::make_unique<QSocketNotifier>(m_pipe, QSocketNotifier::Read);
        connect(m_notifier.get(), &QSocketNotifier::activated, this, &ChildProcess::readSlice);
        m_process.setChildProcessModifier([end = theirs] { ::dup2(end, STDOUT_FILENO); });
        m_process.start();
        ::close(theirs);
    }

    ~ChildProcess() override
    {
        m_process.disconnect(this);
        m_notifier.reset();
        if (m_pipe >= 0)
            ::close(m_pipe);
        if (m_process.state() == QProcess::NotRunning)
            return;
        m_process.kill();
        m_process.waitForFinished(std::chrono::milliseconds(longestDying).count());
    }

    void write(const QByteArray& bytes) override
    {
        if (m_process.state() == QProcess::Running && m_process.bytesToWrite() < mostUnreadInput)
            m_process.write(bytes);
    }

    void closeInput() override { m_process.closeWriteChannel(); }

    void terminate() override
    {
        m_process.terminate();
        QTimer::singleShot(patience, this, [this] { m_process.kill(); });
    }

    void resume() override
    {
        m_isPaused = false;
        if (m_isOver)
            QMetaObject::invokeMethod(this, &ChildProcess::readRest, Qt::QueuedConnection);
        else
            m_notifier->setEnabled(!m_isAtEnd);
    }

private:
    void errorOccurred(QProcess::ProcessError error)
    {
        if (error == QProcess::FailedToStart)
            Q_EMIT failedToLaunch(m_process.errorString());
    }

    void finished()
    {
        m_isOver = true;
        m_notifier->setEnabled(false);
        if (!m_isPaused)
            readRest();
    }

    [[nodiscard]] QByteArray read(qint64 most) const
    {
        QByteArray bytes(most, Qt::Uninitialized);
        const auto count = ::read(m_pipe, bytes.data(), static_cast<std::size_t>(most));
        bytes.resize(std::max<qint64>(0, count));
        return bytes;
    }

    void readSlice()
    {
        m_notifier->setEnabled(false);
        const auto bytes = read(slice);
        // Readable and yet nothing there: the program has closed its output, and perhaps goes on otherwise.
        m_isAtEnd = bytes.isEmpty();
        if (m_isAtEnd)
            return;
        m_isPaused = true;
        Q_EMIT output(bytes);
    }

    void readRest()
    {
        const auto bytes = read(std::min(slice, m_mayFollow));
        m_mayFollow -= bytes.size();
        if (bytes.isEmpty()) {
            Q_EMIT ended();
            return;
        }
        m_isPaused = true;
        Q_EMIT output(bytes);
    }

    QProcess m_process;
    int m_pipe = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
    bool m_isPaused = false;
    bool m_isAtEnd = false;
    bool m_isOver = false;
    qint64 m_mayFollow = mostAfterTheEnd;
};

} // namespace

std::unique_ptr<AdapterProcess> QtAdapterProcesses::launch(const ProgramCall& call)
{
    return std::make_unique<ChildProcess>(call);
}

} // namespace nimbarrow

#pragma once

#include "nowplaying/AdapterMessage.h"
#include "nowplaying/NowPlayingSource.h"
#include "platform/Clock.h"
#include "platform/Scheduler.h"

#include <memory>

namespace nimbarrow {

class AdapterCommand;
class AdapterLines;
class AdapterProcess;
class AdapterProcesses;
class Applications;
class WorkQueue;
class WorkQueues;

/// What any program plays, as a companion process tells it line by line. A companion that dies is started
/// again, later each time; one that cannot work makes the source unavailable.
class MediaRemoteSource final : public NowPlayingSource {
    Q_OBJECT

public:
    /// All references outlive the source.
    struct Ports {
        const AdapterCommand& command;
        AdapterProcesses& processes;
        const Applications& applications;
        Scheduler& scheduler;
        const Clock& clock;
        WorkQueues& queues;
    };

    explicit MediaRemoteSource(const Ports& ports, QObject* parent = nullptr);
    ~MediaRemoteSource() override;

    void start() override;
    void stop() override;
    void playPause() override { send("toggle"); }
    void next() override { send("next"); }
    void previous() override { send("previous"); }
    void seek(double to) override;
    void setVolume(double volume) override;

private:
    void launch();
    void launched(qint64 pid);
    void failedToLaunch(const QString& why);
    void read(const QByteArray& bytes);
    void handle(const AdapterMessage& message);
    void becomeReady();
    void deliver(const adaptermessage::State& state);
    void processEnded();
    void becomeUnavailable();
    void send(const QByteArray& command);

    Ports m_ports;
    std::unique_ptr<AdapterProcess> m_process;
    /// The process that was told to stop, until it has.
    std::unique_ptr<AdapterProcess> m_leaving;
    /// Of the current process; its pieces of work use it one after the other.
    std::shared_ptr<AdapterLines> m_lines;
    bool m_stopping = false;
    /// The current process accepts commands.
    bool m_ready = false;
    Clock::Instant m_launchDate;
    /// In a row: runs that ended before they were ready, and runs that were short.
    int m_failedStarts = 0;
    int m_quickDeaths = 0;
    Timer m_readyTimeout;
    Timer m_relaunch;
    Timer m_leavingTimeout;
    /// Last, so that its work has ended before anything goes.
    std::unique_ptr<WorkQueue> m_queue;
};

} // namespace nimbarrow

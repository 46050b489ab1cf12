#pragma once

#include "mediaprotocol/MediaCommand.h"
#include "mediaprotocol/MediaMessage.h"
#include "nowplaying/NowPlayingSource.h"
#include "platform/Clock.h"
#include "platform/Scheduler.h"

#include <memory>

namespace nimbarrow {

class AdapterCommand;
class AdapterProcess;
class AdapterProcesses;
class Applications;
class LineCutter;
class WorkQueue;
class WorkQueues;

/// What any program plays, as a companion process tells it line by line. A companion that dies is started
/// again, later each time, and one that floods its pipe is ended first; one that cannot work makes the source
/// unavailable.
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
        /// Covers may come from the network.
        bool fetchesArtwork = true;
    };

    explicit MediaRemoteSource(const Ports& ports, QObject* parent = nullptr);
    ~MediaRemoteSource() override;

    void start() override;
    void stop() override;
    void refresh() override { send({ MediaCommand::Verb::Refresh }); }
    void playPause() override { send({ MediaCommand::Verb::Toggle }); }
    void next() override { send({ MediaCommand::Verb::Next }); }
    void previous() override { send({ MediaCommand::Verb::Previous }); }
    void seek(double to) override { send({ MediaCommand::Verb::Seek, to }); }
    void setVolume(double volume) override { send({ MediaCommand::Verb::Volume, volume }); }

private:
    struct Slice;

    void launch();
    void launched(qint64 pid);
    void failedToLaunch(const QString& why);
    void read(const QByteArray& bytes);
    [[nodiscard]] bool isFlood(const Slice& slice);
    void endFlood();
    void handle(const MediaMessage& message);
    void becomeReady();
    void deliver(const MediaState& state);
    void processEnded();
    void becomeUnavailable();
    void send(const MediaCommand& command);

    Ports m_ports;
    std::unique_ptr<AdapterProcess> m_process;
    /// The process that was told to stop, until it has.
    std::unique_ptr<AdapterProcess> m_leaving;
    /// Of the current process; its pieces of work use it one after the other.
    std::shared_ptr<LineCutter> m_lines;
    bool m_stopping = false;
    /// The current process accepts commands.
    bool m_ready = false;
    Clock::Instant m_launchDate;
    /// The current process said too much, and has been told to end.
    bool m_isFlooding = false;
    /// What it said since then.
    Clock::Instant m_countedSince;
    qsizetype m_countedBytes = 0;
    qsizetype m_countedLines = 0;
    /// The track that was delivered last, and its identity, which lasts however long the track becomes.
    std::optional<MediaState> m_lastState;
    QString m_trackID;
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

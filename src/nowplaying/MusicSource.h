#pragma once

#include "nowplaying/NowPlayingSource.h"
#include "platform/Scripting.h"

#include <QStringList>

#include <memory>
#include <optional>
#include <utility>

namespace nimbarrow {

class Clock;
class MusicApp;
class WorkQueue;
class WorkQueues;

/// What the system's own music application plays, and its volume, by scripts that drive it.
class MusicSource final : public NowPlayingSource {
    Q_OBJECT

public:
    /// All references outlive the source.
    struct Ports {
        MusicApp& app;
        Scripting& scripting;
        const Clock& clock;
        WorkQueues& queues;
    };

    explicit MusicSource(const Ports& ports, QObject* parent = nullptr);
    ~MusicSource() override;

    static constexpr QStringView bundleID = u"com.apple.Music";

    /// None: the volume is not known.
    std::function<void(std::optional<double> volume)> onVolume;
    /// The user does not let this program drive the application.
    std::function<void(bool denied)> onPermissionDenied;

    void start() override;
    void stop() override;
    void playPause() override { perform(u"playpause"); }
    void next() override { perform(u"next track"); }
    void previous() override { perform(u"previous track"); }
    void seek(double to) override;
    void setVolume(double volume) override;
    void refresh() override;

    void refreshVolume();

private:
    /// The result of one status read.
    struct Reading {
        NowPlayingSnapshot snapshot;
        /// Identifier and image, when it was fetched this time.
        std::optional<std::pair<QString, QImage>> artwork;
        double volume = 0;
    };
    /// The scripts of one piece of work.
    class Scripts;

    /// Runs `work` on the queue; then tells of a refusal, and runs `done`, on the main thread.
    template <typename Work, typename Done>
    void onQueue(Work work, Done done);
    [[nodiscard]] std::optional<Reading> read(Scripts& scripts);
    void apply(const std::optional<Reading>& reading);
    void perform(QStringView verb);
    void markNotRunning();

    Ports m_ports;
    QMetaObject::Connection m_playerInfoObserver;
    QMetaObject::Connection m_terminationObserver;
    bool m_refreshInFlight = false;
    bool m_refreshPending = false;
    bool m_permissionDenied = false;
    /// Touched on the queue alone.
    std::optional<QString> m_artworkFetchedFor;
    /// Last, so that its work has ended before anything goes.
    std::unique_ptr<WorkQueue> m_queue;
};

} // namespace nimbarrow

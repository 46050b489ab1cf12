#pragma once

#include <QDBusConnection>
#include <QDateTime>
#include <QFileSystemWatcher>
#include <QObject>
#include <QSocketNotifier>

#include <functional>
#include <optional>

namespace nimbarrow {

/// Tells when another day may have begun: at local midnight, when the clock or the time zone is set, and
/// after a sleep. The kernel waits for all of it; nothing is polled.
class DayWatch final : public QObject {
    Q_OBJECT

public:
    struct Places {
        /// The file that says which zone the system is in.
        QString zoneFile = QStringLiteral("/etc/localtime");
        /// The moment the next day begins.
        std::function<QDateTime()> nextDay;
    };

    /// `system` is the system's message bus, on which sleeps are told.
    explicit DayWatch(std::optional<QDBusConnection> system);
    DayWatch(std::optional<QDBusConnection> system, Places places);
    ~DayWatch() override;

Q_SIGNALS:
    /// At least once a day, and perhaps when it is the same day still.
    void dayChanged();

private Q_SLOTS:
    void sleepTold(bool begins);

private:
    void wind();
    void rung();
    void watchZone();
    void zoneMayHaveChanged();

    const Places m_places;
    int m_timer = -1;
    QSocketNotifier m_notifier;
    QFileSystemWatcher m_zoneWatch;
    /// What was there when it was last looked at.
    QString m_zone;
};

} // namespace nimbarrow

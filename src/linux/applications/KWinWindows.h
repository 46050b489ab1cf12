#pragma once

#include "linux/applications/DesktopApplications.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QList>
#include <QObject>
#include <QStringList>
#include <QTemporaryFile>

#include <optional>

namespace nimbarrow {

/// The programs by the windows that KWin tells of: a script that KWin runs calls back over the bus.
class KWinWindows final : public QObject, public DesktopApplications, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "ua.tessak.Nimbarrow.Windows")

public:
    /// Asks KWin in the background; until it has answered nothing is known to be in front.
    explicit KWinWindows(const QDBusConnection& bus);
    KWinWindows(const QDBusConnection& bus, std::unique_ptr<DesktopEntries> entries);
    ~KWinWindows() override;

    /// Whether KWin tells which program is in front; none until it has said so or refused.
    [[nodiscard]] std::optional<bool> tellsFront() const { return m_tellsFront; }

    [[nodiscard]] std::optional<RunningApplication> frontmost() const override;
    [[nodiscard]] std::optional<RunningApplication> withProcess(qint32 pid) const override;
    void activate(const RunningApplication& application) override;

    /// For the script alone. `id` is empty where no window is in front.
    Q_SCRIPTABLE void opened(
        const QString& id, const QString& desktopFile, const QString& windowClass, const QString& pid);
    Q_SCRIPTABLE void closed(const QString& id);
    Q_SCRIPTABLE void activated(const QString& id);

private:
    struct Window {
        quint64 number = 0;
        QString id;
        QString desktopFile;
        QString windowClass;
        qint32 pid = 0;
    };

    void load();
    void unload();
    void run(int script);
    [[nodiscard]] bool isFromKWin() const;
    void bringForward();
    [[nodiscard]] const Window* windowFor(qint32 pid) const;
    [[nodiscard]] std::optional<DesktopEntry> entryOf(const Window& window) const;
    [[nodiscard]] std::optional<RunningApplication> shown(const Window& window) const;

    QDBusConnection m_bus;
    /// KWin reads it once, when it loads it.
    QTemporaryFile m_script;
    /// The name of KWin's connection; empty until the bus has told it.
    QString m_kwin;
    std::optional<bool> m_tellsFront;
    /// The one that was last in front comes first.
    QList<Window> m_windows;
    QString m_front;
    quint64 m_lastNumber = 0;
};

} // namespace nimbarrow

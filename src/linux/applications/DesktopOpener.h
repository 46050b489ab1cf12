#pragma once

#include "linux/session/InheritedState.h"
#include "platform/Opener.h"

#include <QDBusConnection>
#include <QList>
#include <QStringList>

#include <optional>

class QProcess;

namespace nimbarrow {

struct EventIdentifier;

/// Opens by the desktop's own tool, and by what is installed for a calendar event or for the settings. Every
/// program is started as the session would have started it.
class DesktopOpener final : public Opener {
    Q_OBJECT

public:
    /// Files are revealed by the file manager on `bus`; without one their folder is opened.
    DesktopOpener(InheritedState inherited, std::optional<QDBusConnection> bus);
    /// What it has opened stays open.
    ~DesktopOpener() override;

    void open(const QUrl& url) override;
    [[nodiscard]] bool hasSettings() const override { return !settingsCommand(false).isEmpty(); }
    void reveal(const QList<QUrl>& files) override;

private:
    void openByDefault(const QUrl& url);
    /// By the first of these command lines that does it.
    void openByFirst(QList<QStringList> commands, const QUrl& url);
    void openEvent(const EventIdentifier& event);
    /// What shows this desktop's settings; empty where nothing does.
    [[nodiscard]] QStringList settingsCommand(bool aboutCalendars) const;

    /// The path of an installed program; empty where there is none.
    [[nodiscard]] QString program(const QString& name) const;
    void start(const QString& path, const QStringList& arguments) const;

    InheritedState m_inherited;
    std::optional<QDBusConnection> m_bus;
    /// The tools that may still tell that they failed.
    QList<QProcess*> m_tools;
};

} // namespace nimbarrow

#pragma once

#include "linux/session/InheritedState.h"
#include "platform/Opener.h"

#include <QDBusConnection>
#include <QObject>
#include <QStringList>

#include <optional>

namespace nimbarrow {

struct EventIdentifier;

/// Opens by the desktop's own tool, and by what is installed for a calendar event or for the settings. Every
/// program is started as the session would have started it.
class DesktopOpener final : public Opener {
public:
    /// Files are revealed by the file manager on `bus`; without one their folder is opened.
    DesktopOpener(InheritedState inherited, std::optional<QDBusConnection> bus);

    void open(const QUrl& url) override;
    void reveal(const QList<QUrl>& files) override;

private:
    void openByDefault(const QUrl& url) const;
    void openEvent(const EventIdentifier& event) const;
    void openSettings(bool aboutCalendars) const;

    /// The path of an installed program; empty where there is none.
    [[nodiscard]] QString program(const QString& name) const;
    void start(const QString& path, const QStringList& arguments) const;

    InheritedState m_inherited;
    std::optional<QDBusConnection> m_bus;
    /// Owns the questions to the file manager that are on their way.
    QObject m_questions;
};

} // namespace nimbarrow

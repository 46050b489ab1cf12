#pragma once

#include "support/PrivateBus.h"
#include "support/TestFolder.h"

#include <QTest>

#include <memory>
#include <optional>

namespace nimbarrow {

/// A real Evolution Data Server on a message bus and in folders of its own, and another program that uses it.
/// The process that makes one has its environment changed.
class DataServer {
public:
    /// `folder` is for the server alone. It has the calendars "another", "system-calendar" and "second"
    /// (red), and a mail account of sam@example.org.
    explicit DataServer(const QString& folder)
    {
        qputenv("HOME", QFile::encodeName(folder));
        for (const auto* const variable :
            { "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR" }) {
            const auto path = folder + QLatin1Char('/') + QString::fromLatin1(variable).toLower();
            QDir().mkpath(path);
            QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
            qputenv(variable, QFile::encodeName(path));
        }
        qputenv("GSETTINGS_BACKEND", "memory");
        const auto sources = folder + QStringLiteral("/xdg_config_home/evolution/sources/");
        writeFile(sources + QStringLiteral("second.source"),
            "[Data Source]\nDisplayName=Second\nEnabled=true\nParent=local-stub\n"
            "[Calendar]\nBackendName=local\nColor=#ff0000\nSelected=true\n");
        writeFile(sources + QStringLiteral("another.source"),
            "[Data Source]\nDisplayName=Another\nEnabled=true\nParent=local-stub\n"
            "[Calendar]\nBackendName=local\nSelected=true\n");
        writeFile(sources + QStringLiteral("mail.source"),
            "[Data Source]\nDisplayName=Mail\nEnabled=true\n"
            "[Mail Identity]\nAddress=Sam@Example.org\nName=Sam\n");
        m_bus = std::make_unique<PrivateBus>();
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus->address().toUtf8());
    }

    /// What the other program answers: see calendar_program.py. None when it has failed.
    [[nodiscard]] static std::optional<QString> ask(const QStringList& words, const QByteArray& input = {})
    {
        QProcess process;
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(QStringLiteral("/usr/bin/python3"),
            QStringList { QFINDTESTDATA("../desktop/peers/calendar_program.py") } + words);
        process.write(input);
        process.closeWriteChannel();
        if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit
            || process.exitCode() != 0)
            return {};
        return QString::fromUtf8(process.readAllStandardOutput());
    }

    /// Ends the bus, and the server with it, for good.
    void endBus() { m_bus.reset(); }

    /// The processes of the server.
    [[nodiscard]] QList<qint64> processes() const
    {
        // Whoever has this bus in its environment and is of the server's programs.
        QList<qint64> result;
        const auto mark = "DBUS_SESSION_BUS_ADDRESS=" + m_bus->address().toUtf8();
        for (const auto& entry : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
            const auto process = QStringLiteral("/proc/") + entry;
            if (readFile(process + QStringLiteral("/cmdline")).contains("evolution-")
                && readFile(process + QStringLiteral("/environ")).contains(mark))
                result += entry.toLongLong();
        }
        return result;
    }

private:
    std::unique_ptr<PrivateBus> m_bus;
};

} // namespace nimbarrow

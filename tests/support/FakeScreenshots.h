#pragma once

#include "platform/FolderEvents.h"
#include "platform/ScreenshotFolder.h"

#include <QFileInfo>

#include <map>
#include <utility>

namespace nimbarrow {

/// Folders of which the test says that they have changed.
class FakeFolderEvents final : public FolderEvents {
public:
    bool canWatch = true;
    /// Somebody has put another folder in the place of every one.
    bool replaced = false;
    std::map<QString, std::function<void()>> watched;
    QStringList unfinished;

    [[nodiscard]] QStringList folders() const
    {
        QStringList folders;
        for (const auto& [folder, changed] : watched)
            folders << folder;
        return folders;
    }

    void changed() const
    {
        for (const auto& [folder, changed] : std::map(watched))
            changed();
    }

    [[nodiscard]] std::unique_ptr<Watch> watch(const QString& folder, std::function<void()> changed) override
    {
        if (!canWatch || !QFileInfo(folder).isDir())
            return {};
        watched[folder] = std::move(changed);
        return std::make_unique<Watched>(*this, folder);
    }

private:
    class Watched final : public Watch {
    public:
        Watched(FakeFolderEvents& events, QString folder)
            : m_events(events)
            , m_folder(std::move(folder))
        {
        }
        ~Watched() override { m_events.watched.erase(m_folder); }
        [[nodiscard]] QStringList unfinished() const override { return m_events.unfinished; }
        [[nodiscard]] bool isCurrent() const override { return !m_events.replaced; }

    private:
        FakeFolderEvents& m_events;
        QString m_folder;
    };
};

/// Screenshot tools that are set as the test says, and mark the files that it names.
class FakeScreenshotFolder final : public ScreenshotFolder {
public:
    QStringList set;
    QString folder;
    QStringList marked;

    [[nodiscard]] QStringList settings() const override { return set; }
    [[nodiscard]] QString defaultFolder() const override { return folder; }
    [[nodiscard]] bool isScreenCapture(const QString& path) const override { return marked.contains(path); }
};

} // namespace nimbarrow

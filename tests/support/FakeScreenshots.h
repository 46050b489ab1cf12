#pragma once

#include "platform/FolderEvents.h"
#include "platform/ScreenshotFolder.h"

namespace nimbarrow {

/// A folder of which the test says that it has changed.
class FakeFolderEvents final : public FolderEvents {
public:
    bool canWatch = true;
    /// What is being watched; empty when nothing is.
    QString watched;
    std::function<void()> changed;
    QStringList unfinished;

    [[nodiscard]] std::unique_ptr<Watch> watch(
        const QString& folder, std::function<void()> whenChanged) override
    {
        if (!canWatch)
            return {};
        watched = folder;
        changed = std::move(whenChanged);
        return std::make_unique<Watched>(*this);
    }

private:
    class Watched final : public Watch {
    public:
        explicit Watched(FakeFolderEvents& events)
            : m_events(events)
        {
        }
        [[nodiscard]] QStringList unfinished() const override { return m_events.unfinished; }
        ~Watched() override
        {
            m_events.watched.clear();
            m_events.changed = {};
        }

    private:
        FakeFolderEvents& m_events;
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

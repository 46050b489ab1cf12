#pragma once

#include "platform/SharePicker.h"

#include <optional>

namespace nimbarrow {

/// Offers what the test says, and remembers what was shared last.
class FakeSharePicker final : public SharePicker {
public:
    QList<ShareService> offered { ShareService::Email, ShareService::OpenWith };
    std::optional<ShareService> used;
    /// As where the system has a picker of its own; then `done` closes it.
    bool presents = false;
    std::function<void()> done;
    QList<ShareItem> shared;

    [[nodiscard]] bool present(const QList<ShareItem>& items, std::function<void()> whenDone) override
    {
        if (!presents)
            return false;
        shared = items;
        done = std::move(whenDone);
        return true;
    }

    [[nodiscard]] QList<ShareService> services(const QList<ShareItem>& /*items*/) const override
    {
        return offered;
    }

    void share(const QList<ShareItem>& items, ShareService service) override
    {
        used = service;
        shared = items;
    }
};

} // namespace nimbarrow

#pragma once

#include "platform/SharePicker.h"

#include <optional>

namespace nimbarrow {

/// Offers what the test says, and remembers what was shared last.
class FakeSharePicker final : public SharePicker {
public:
    QList<ShareService> offered { ShareService::Email, ShareService::OpenWith };
    std::optional<ShareService> used;
    QList<ShareItem> shared;

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

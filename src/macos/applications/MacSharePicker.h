#pragma once

#include "platform/SharePicker.h"

#include <memory>

namespace nimbarrow {

/// The system's own picker of sharing services. It opens where the pointer has just pressed.
class MacSharePicker final : public SharePicker {
public:
    MacSharePicker();
    ~MacSharePicker() override;

    [[nodiscard]] bool present(const QList<ShareItem>& items, std::function<void()> done) override;
    // The picker has them all.
    [[nodiscard]] QList<ShareService> services(const QList<ShareItem>& /*items*/) const override
    {
        return {};
    }
    void share(const QList<ShareItem>& /*items*/, ShareService /*service*/) override { }

private:
    /// The picker that is open.
    struct Shown;

    std::unique_ptr<Shown> m_shown;
};

} // namespace nimbarrow

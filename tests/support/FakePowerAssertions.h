#pragma once

#include "platform/PowerAssertions.h"

#include <QList>

#include <algorithm>
#include <set>

namespace nimbarrow {

/// Notes what is held, and grants or refuses as told.
class FakePowerAssertions final : public PowerAssertions {
public:
    struct Held final : Assertion {
        Held(FakePowerAssertions& owner, Type type, QString name, std::function<void()> failed)
            : owner(owner)
            , type(type)
            , name(std::move(name))
            , failed(std::move(failed))
        {
            owner.held << this;
        }
        ~Held() override { owner.held.removeOne(this); }

        FakePowerAssertions& owner;
        Type type;
        QString name;
        std::function<void()> failed;
    };

    [[nodiscard]] std::unique_ptr<Assertion> create(
        Type type, const QString& name, std::function<void()> failed) override
    {
        if (missing.contains(type))
            return nullptr;
        mostHeld = std::max(mostHeld, held.size() + 1);
        return std::make_unique<Held>(*this, type, name, std::move(failed));
    }

    /// The service says no to what was asked of it before.
    void refuse(Type type) const
    {
        const auto asked = held;
        for (auto* const assertion : asked) {
            if (assertion->type == type) {
                const auto failed = assertion->failed;
                failed();
            }
        }
    }

    /// In the order of their creation.
    QList<Held*> held;
    qsizetype mostHeld = 0;
    std::set<Type> missing;
};

} // namespace nimbarrow

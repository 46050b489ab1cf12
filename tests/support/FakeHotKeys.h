#pragma once

#include "platform/HotKeys.h"

namespace nimbarrow {

/// Counts what is registered, and presses the last registered key when told to.
class FakeHotKeys final : public HotKeys {
public:
    [[nodiscard]] std::unique_ptr<Registration> registerKey(
        Key key, KeyModifiers modifiers, std::function<void()> pressed) override
    {
        lastKey = { key, modifiers, false };
        press = std::move(pressed);
        return std::make_unique<Counted>(registered);
    }

    int registered = 0;
    KeyEvent lastKey;
    std::function<void()> press;

private:
    class Counted final : public Registration {
    public:
        explicit Counted(int& count)
            : m_count(count)
        {
            ++m_count;
        }
        ~Counted() override { --m_count; }

    private:
        int& m_count;
    };
};

} // namespace nimbarrow

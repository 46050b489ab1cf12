#pragma once

#include "platform/HotKeys.h"

namespace nimbarrow {

/// Counts what is registered, and presses keys when told to.
class FakeHotKeys final : public HotKeys {
public:
    [[nodiscard]] std::unique_ptr<Handle> installHandler(Handler handler) override
    {
        m_handler = std::move(handler);
        return std::make_unique<Counted>(handlers);
    }

    [[nodiscard]] std::unique_ptr<Handle> registerKey(Key key, KeyModifiers modifiers, HotKeyId id) override
    {
        lastKey = { key, modifiers, false };
        lastId = id;
        return std::make_unique<Counted>(registered);
    }

    void press(HotKeyId id) const { m_handler(id); }

    int handlers = 0;
    int registered = 0;
    KeyEvent lastKey;
    HotKeyId lastId;

private:
    class Counted final : public Handle {
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

    Handler m_handler;
};

} // namespace nimbarrow

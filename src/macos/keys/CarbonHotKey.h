#pragma once

#include <QtGlobal>

#include <Carbon/Carbon.h>
#include <functional>

namespace nimbarrow {

/// One combination that is registered with the event manager until it is dropped. One that another program
/// holds for itself stays without effect. Main thread.
class CarbonHotKey final {
public:
    /// `place` is a virtual key code, `modifiers` are the event manager's, and no other key of the program
    /// has this `number`. `pressed` may end the hot key.
    CarbonHotKey(quint32 place, quint32 modifiers, quint32 number, std::function<void()> pressed);
    ~CarbonHotKey();
    Q_DISABLE_COPY_MOVE(CarbonHotKey)

private:
    static OSStatus handle(EventHandlerCallRef next, EventRef event, void* hotKey);

    quint32 m_number;
    std::function<void()> m_pressed;
    EventHandlerRef m_handler = nullptr;
    EventHotKeyRef m_reference = nullptr;
};

} // namespace nimbarrow

#pragma once

#include <QtGlobal>

#include <Carbon/Carbon.h>
#include <functional>

namespace nimbarrow {

/// One combination that is registered with the event manager until it is dropped. One that another program
/// holds for itself stays without effect.
class CarbonHotKey final {
public:
    /// `place` is a virtual key code, `modifiers` are the event manager's.
    CarbonHotKey(quint32 place, quint32 modifiers, quint32 signature, quint32 number);
    ~CarbonHotKey();
    Q_DISABLE_COPY_MOVE(CarbonHotKey)

private:
    EventHotKeyRef m_reference = nullptr;
};

/// Is called for every hot key of the program that goes down, until it is dropped. Main thread.
class CarbonHotKeyHandler final {
public:
    /// A key that does not tell which it is comes as zeros.
    using Pressed = std::function<void(quint32 signature, quint32 number)>;

    explicit CarbonHotKeyHandler(Pressed pressed);
    ~CarbonHotKeyHandler();
    Q_DISABLE_COPY_MOVE(CarbonHotKeyHandler)

private:
    static OSStatus handle(EventHandlerCallRef next, EventRef event, void* handler);

    Pressed m_pressed;
    EventHandlerRef m_reference = nullptr;
};

} // namespace nimbarrow

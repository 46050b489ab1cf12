#pragma once
#include <CoreFoundation/CoreFoundation.h>
#pragma clang assume_nonnull begin
typedef struct OpaqueEventHotKeyRef* EventHotKeyRef;
typedef struct OpaqueEventHandlerRef* EventHandlerRef;
typedef struct OpaqueEventHandlerCallRef* EventHandlerCallRef;
typedef struct OpaqueEventTargetRef* EventTargetRef;
typedef struct OpaqueEventRef* EventRef;
typedef UInt32 OptionBits;
typedef unsigned long ItemCount;
typedef unsigned long ByteCount;
typedef OSType EventParamName;
typedef OSType EventParamType;
#pragma pack(push, 2)
struct EventHotKeyID { OSType signature; UInt32 id; };
struct EventTypeSpec { OSType eventClass; UInt32 eventKind; };
#pragma pack(pop)
typedef OSStatus (*EventHandlerUPP)(EventHandlerCallRef _Nullable next, EventRef event, void* _Nullable userData);
enum : UInt32 {
    kEventClassKeyboard SINCE(10.0) = 0x6b657962,
    kEventParamDirectObject SINCE(10.0) = 0x2d2d2d2d,
    typeEventHotKeyID SINCE(10.0) = 0x686b6964,
    kEventHotKeyPressed SINCE(10.0) = 5,
};
enum : OSStatus {
    noErr SINCE(10.0) = 0,
    eventNotHandledErr SINCE(10.0) = -9874,
};
API OSStatus RegisterEventHotKey(UInt32 code, UInt32 modifiers, EventHotKeyID identifier, EventTargetRef target, OptionBits options, EventHotKeyRef _Nullable* _Nonnull out) SINCE(10.0);
API OSStatus UnregisterEventHotKey(EventHotKeyRef hotKey) SINCE(10.0);
API OSStatus InstallEventHandler(EventTargetRef target, EventHandlerUPP handler, ItemCount count, const EventTypeSpec* list, void* _Nullable userData, EventHandlerRef _Nullable* _Nullable out) SINCE(10.0);
API OSStatus RemoveEventHandler(EventHandlerRef handler) SINCE(10.0);
API EventTargetRef GetApplicationEventTarget(void) SINCE(10.0);
API OSStatus GetEventParameter(EventRef event, EventParamName name, EventParamType wanted, EventParamType* _Nullable actual, ByteCount size, ByteCount* _Nullable actualSize, void* _Nullable data) SINCE(10.0);
#pragma clang assume_nonnull end

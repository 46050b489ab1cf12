#pragma once
#include <Foundation/Foundation.h>
#pragma clang assume_nonnull begin
@protocol OS_dispatch_queue
@end
@protocol OS_dispatch_source
@end
typedef NSObject<OS_dispatch_queue>* dispatch_queue_t;
typedef NSObject<OS_dispatch_source>* dispatch_source_t;
typedef void (^dispatch_block_t)(void);
struct dispatch_queue_s;
struct dispatch_source_type_s;
typedef const struct dispatch_source_type_s* dispatch_source_type_t;
API struct dispatch_queue_s _dispatch_main_q SINCE(10.6);
API const struct dispatch_source_type_s _dispatch_source_type_vnode SINCE(10.6);
API const struct dispatch_source_type_s _dispatch_source_type_signal SINCE(10.6);
#define DISPATCH_SOURCE_TYPE_SIGNAL (&_dispatch_source_type_signal)
#define DISPATCH_SOURCE_TYPE_VNODE (&_dispatch_source_type_vnode)
enum : uintptr_t {
    DISPATCH_VNODE_DELETE SINCE(10.6) = 0x1,
    DISPATCH_VNODE_WRITE SINCE(10.6) = 0x2,
    DISPATCH_VNODE_RENAME SINCE(10.6) = 0x20,
};
static inline dispatch_queue_t dispatch_get_main_queue(void) { return (__bridge dispatch_queue_t)(void*)&_dispatch_main_q; }
API dispatch_source_t _Nullable dispatch_source_create(dispatch_source_type_t type, uintptr_t handle, uintptr_t mask, dispatch_queue_t _Nullable queue) SINCE(10.6) __attribute__((ns_returns_retained));
API void dispatch_source_set_event_handler(dispatch_source_t source, dispatch_block_t _Nullable handler) SINCE(10.6);
API void dispatch_source_set_cancel_handler(dispatch_source_t source, dispatch_block_t _Nullable handler) SINCE(10.6);
API void dispatch_source_cancel(dispatch_source_t source) SINCE(10.6);
API void dispatch_activate(NSObject* object) SINCE(10.12);
API void dispatch_async(dispatch_queue_t queue, dispatch_block_t block) SINCE(10.6);
#pragma clang assume_nonnull end

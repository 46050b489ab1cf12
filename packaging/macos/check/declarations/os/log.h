#pragma once
#include <Foundation/Foundation.h>
#pragma clang assume_nonnull begin
@protocol OS_os_log
@end
typedef NSObject<OS_os_log>* os_log_t;
typedef uint8_t os_log_type_t;
enum : os_log_type_t {
    OS_LOG_TYPE_DEFAULT SINCE(10.12) = 0x00,
    OS_LOG_TYPE_INFO SINCE(10.12) = 0x01,
    OS_LOG_TYPE_DEBUG SINCE(10.12) = 0x02,
    OS_LOG_TYPE_ERROR SINCE(10.12) = 0x10,
    OS_LOG_TYPE_FAULT SINCE(10.12) = 0x11,
};
API struct mach_header __dso_handle;
API os_log_t os_log_create(const char* subsystem, const char* category) SINCE(10.12) __attribute__((ns_returns_retained));
API bool os_log_type_enabled(os_log_t log, os_log_type_t type) SINCE(10.12);
API void _os_log_impl(void* image, os_log_t log, os_log_type_t type, const char* format, uint8_t* buffer, uint32_t size) SINCE(10.12);
#define os_log_with_type(log, type, format, ...) do { os_log_t l_ = (log); const os_log_type_t t_ = (type); if (os_log_type_enabled(l_, t_)) { alignas(16) uint8_t b_[__builtin_os_log_format_buffer_size(format, ##__VA_ARGS__)]; static const char f_[] = format; _os_log_impl((void*)&__dso_handle, l_, t_, f_, (uint8_t*)__builtin_os_log_format(b_, format, ##__VA_ARGS__), (uint32_t)sizeof(b_)); } } while (0)
#pragma clang assume_nonnull end

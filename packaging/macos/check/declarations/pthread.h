// The C library's own, but for a function that only here names the calling thread.
#pragma once
#define pthread_setname_np pthread_setname_np_of_any
#include_next <pthread.h>
#undef pthread_setname_np
#include <Basics.h>
API int pthread_setname_np(const char* name) SINCE(10.6);

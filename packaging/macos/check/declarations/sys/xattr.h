#pragma once
#include <Basics.h>
API ssize_t getxattr(const char* path, const char* name, void* value, size_t size, uint32_t position, int options) SINCE(10.4);

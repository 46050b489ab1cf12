#pragma once
#include <Basics.h>
struct _malloc_zone_t;
API size_t malloc_zone_pressure_relief(struct _malloc_zone_t* zone, size_t goal) SINCE(10.7);

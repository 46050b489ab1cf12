// The C library's own, with what this system has beside it.
#include_next <fcntl.h>
#define O_EVTONLY 0x8000

// Most of the doubles live in headers; a library needs one source file.
#include "support/ManualTime.h"

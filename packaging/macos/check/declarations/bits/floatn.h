// That system has no number of 128 bits; the C library's own header asks the processor that it was made for.
#define __HAVE_FLOAT128 0
#define __HAVE_DISTINCT_FLOAT128 0
#define __HAVE_FLOAT64X 0
#define __HAVE_FLOAT64X_LONG_DOUBLE 0
#include <bits/floatn-common.h>

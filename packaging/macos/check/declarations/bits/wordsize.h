// Both processors are 64 bits wide. The C library's own header asks for the one that it was made for.
#define __WORDSIZE 64

// The C library's own asks for the processor that it was made for.

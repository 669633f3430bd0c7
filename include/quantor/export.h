// Symbol visibility for the Quantor shared library. The library is built with
// hidden visibility; QUANTOR_API marks what a host may link against.
#pragma once

#if defined(_WIN32)
#define QUANTOR_API
#else
#define QUANTOR_API __attribute__((visibility("default")))
#endif

#pragma once

/// @def QORTK_CLONES
/// Stands in front of a function whose loops gain from wider vectors than every processor has. It
/// is compiled for processors with and without them, and one is chosen when the library is loaded.
/// Where compiler or system have no such means, it does nothing: Clang doesn't for templates.

#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__) && defined(__gnu_linux__)
#define QORTK_CLONES __attribute__((target_clones("avx2", "default")))
#else
#define QORTK_CLONES
#endif

#pragma once

/// @def QORTK_CLONES
/// Stands in front of a function whose loops gain from wider vectors than every processor has. It
/// is compiled for processors with and without them, and one is chosen when the library is loaded.
/// Where there are no such means, it does nothing: Clang has none for templates, and a choice at
/// load time comes too early for ThreadSanitizer.

#if defined(__GNUC__) && !defined(__clang__) && !defined(__SANITIZE_THREAD__) &&                   \
    defined(__x86_64__) && defined(__gnu_linux__)
#define QORTK_CLONES __attribute__((target_clones("avx2", "default")))
#else
#define QORTK_CLONES
#endif

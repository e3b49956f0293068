#pragma once

/// @def QORTK_TARGET_CLONES
/// Placed before a function whose loops gain from vectors wider than every processor has. GCC
/// compiles the function twice, with and without AVX2, and the loader selects one when the library
/// is loaded. The macro is empty where that does not work: Clang does not clone templates, and
/// ThreadSanitizer is not initialized yet when the loader selects.

#if defined(__GNUC__) && !defined(__clang__) && !defined(__SANITIZE_THREAD__) &&                   \
    defined(__x86_64__) && defined(__gnu_linux__)
#define QORTK_TARGET_CLONES __attribute__((target_clones("avx2", "default")))
#else
#define QORTK_TARGET_CLONES
#endif

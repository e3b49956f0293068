// SPDX-License-Identifier: MIT
#pragma once

/// @def QORTK_TARGET_CLONES
/// Marks a function whose loops are faster with AVX2. GCC compiles the function with and without
/// AVX2, and the dynamic loader selects one of them (function multiversioning). The macro is empty
/// for other compilers, because Clang does not clone templates, and with ThreadSanitizer, which is
/// not initialized yet when the loader selects.

#if defined(__GNUC__) && !defined(__clang__) && !defined(__SANITIZE_THREAD__) &&                   \
    defined(__x86_64__) && defined(__gnu_linux__)
#define QORTK_TARGET_CLONES __attribute__((target_clones("avx2", "default")))
#else
#define QORTK_TARGET_CLONES
#endif

#pragma once

/// @file
/// Marks what the shared library exports. Define `QORTK_STATIC` where the library is linked
/// statically; the CMake package and the pkg-config file do so.

/// @def QORTK_API
/// Stands in front of what is exported.

#if defined(QORTK_STATIC)
#define QORTK_API
#elif defined(_WIN32) && defined(QORTK_BUILDING)
#define QORTK_API __declspec(dllexport)
#elif defined(_WIN32)
#define QORTK_API __declspec(dllimport)
#else
#define QORTK_API __attribute__((visibility("default")))
#endif

/// @def QORTK_PRINTF
/// Stands behind a function that takes a printf format and its arguments, with their places counted
/// from 1, and lets the compiler check that they match.

#if defined(__GNUC__)
#define QORTK_PRINTF(text, values) __attribute__((format(printf, text, values)))
#else
#define QORTK_PRINTF(text, values)
#endif

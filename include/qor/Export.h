// SPDX-License-Identifier: MIT
#pragma once

/// @file
/// Macros for exported declarations. Programs that link the static library define `QORTK_STATIC`;
/// the CMake package and the pkg-config file do so for them.

/// @def QORTK_API
/// Marks a declaration that the shared library exports.

#if defined(QORTK_STATIC)
#define QORTK_API
#elif defined(_WIN32) && defined(QORTK_BUILDING)
#define QORTK_API __declspec(dllexport)
#elif defined(_WIN32)
#define QORTK_API __declspec(dllimport)
#elif defined(__GNUC__)
#define QORTK_API __attribute__((visibility("default")))
#else
#define QORTK_API
#endif

/// @def QORTK_HIDDEN
/// Marks a private class inside an exported class that the shared library does not export.

#if defined(__GNUC__) && !defined(_WIN32) && !defined(QORTK_STATIC)
#define QORTK_HIDDEN __attribute__((visibility("hidden")))
#else
#define QORTK_HIDDEN
#endif

/// @def QORTK_API_INLINE
/// Marks an inline member function that the shared library exports for programs that were compiled
/// when it was not inline. DLLs export all members of exported classes.

#if defined(__GNUC__) && !defined(_WIN32) && !defined(QORTK_STATIC)
#define QORTK_API_INLINE __attribute__((visibility("default")))
#else
#define QORTK_API_INLINE
#endif

/// @def QORTK_PRINTF
/// Lets the compiler check the arguments of a function against its printf format. `text` and
/// `values` are the positions of the format and of the first argument, counted from 1.

#if defined(__MINGW32__) && !defined(__clang__)
#define QORTK_PRINTF(text, values) __attribute__((format(gnu_printf, text, values)))
#elif defined(__GNUC__)
#define QORTK_PRINTF(text, values) __attribute__((format(printf, text, values)))
#else
#define QORTK_PRINTF(text, values)
#endif

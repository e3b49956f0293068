#pragma once

/// @file
/// Marks the names that the shared library exports. Programs that link the library statically
/// define `QORTK_STATIC`; the CMake package and the pkg-config file do so for them.

/// @def QORTK_API
/// Marks an exported class or function.

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

/// @def QORTK_PRINTF
/// Lets the compiler check the arguments of a function against its printf format. Both parameters
/// are positions, counted from 1.

#if defined(__MINGW32__) && !defined(__clang__)
#define QORTK_PRINTF(text, values) __attribute__((format(gnu_printf, text, values)))
#elif defined(__GNUC__)
#define QORTK_PRINTF(text, values) __attribute__((format(printf, text, values)))
#else
#define QORTK_PRINTF(text, values)
#endif

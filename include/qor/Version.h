#pragma once

/// @file
/// The version of the library that a program is compiled with. This is the one place that tells it.
/// Versions of one major number are compatible: a program goes on working with a later one without
/// being compiled anew. A later minor number has more to offer, a later patch number mends faults.
///
/// @code
/// std::cout << "made with qortk " QORTK_VERSION "\n"; // made with qortk 1.1.0
/// #if QORTK_VERSION_MAJOR == 1 && QORTK_VERSION_MINOR >= 2
/// // what came with 1.2.0
/// #endif
/// @endcode

/// A number of the version.
/// @{
#define QORTK_VERSION_MAJOR 1
#define QORTK_VERSION_MINOR 1
#define QORTK_VERSION_PATCH 0
/// @}

/// @cond
#define QORTK_QUOTE(text) #text
#define QORTK_JOIN(major, minor, patch)                                                            \
    QORTK_QUOTE(major) "." QORTK_QUOTE(minor) "." QORTK_QUOTE(patch)
/// @endcond

/// The version as text, such as "1.2.3".
#define QORTK_VERSION QORTK_JOIN(QORTK_VERSION_MAJOR, QORTK_VERSION_MINOR, QORTK_VERSION_PATCH)

// SPDX-License-Identifier: MIT
#pragma once

/// @file
/// The version of the library. A program that is compiled with one version runs with every later
/// one of the same major number. A minor version adds operations, a patch version fixes bugs.
///
/// @code
/// std::cout << "compiled with qortk " QORTK_VERSION ", running with " << qor::getVersion() << '\n';
/// #if QORTK_VERSION_MAJOR == 1 && QORTK_VERSION_MINOR >= 2
/// // uses an operation of version 1.2.0
/// #endif
/// @endcode

#include "qor/Export.h"

/// Numbers of the version that the program is compiled with.
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

/// The version that the program is compiled with, as text such as "1.2.3".
#define QORTK_VERSION QORTK_JOIN(QORTK_VERSION_MAJOR, QORTK_VERSION_MINOR, QORTK_VERSION_PATCH)

namespace qor
{

/// Returns the version of the library that the program runs with.
/// @return text such as "1.2.3", valid for the life of the program
[[nodiscard]] QORTK_API const char* getVersion() noexcept;

} // namespace qor

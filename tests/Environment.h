// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <string>

/// Sets an environment variable of this process; null removes it. On Windows, an empty value also
/// removes it.
inline void setVariable(const char* name, const char* value)
{
#ifdef _WIN32
    _putenv_s(name, value ? value : "");
#else
    value ? setenv(name, value, 1) : unsetenv(name);
#endif
}

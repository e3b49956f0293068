// SPDX-License-Identifier: MIT
#include "HandleCount.h"

#include <windows.h>

int countHandles()
{
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return static_cast<int>(count);
}

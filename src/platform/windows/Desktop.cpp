// SPDX-License-Identifier: MIT
#include "platform/Platform.h"
#include "platform/windows/SystemHeaders.h"

#include <shellapi.h>

namespace qor::platform
{

bool showErrorBox(const char* text, const char* caption)
{
    // Windows returns 0 on failure, Wine returns a negative number.
    return MessageBoxA(nullptr, text, caption, MB_ICONERROR) > 0;
}

void openAddress(const char* address)
{
    if (*address == '\0' || *address == '-') {
        return;
    }
    ShellExecuteA(nullptr, "open", address, nullptr, nullptr, SW_SHOWNORMAL);
}

} // namespace qor::platform

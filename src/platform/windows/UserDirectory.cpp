// SPDX-License-Identifier: MIT
#include <array>
#include <cstdlib>

#include "platform/Platform.h"
#include "platform/windows/SystemHeaders.h"

#include <shlobj.h>

namespace qor::platform
{

const char* getEnvironmentVariable(const char* name)
{
    return std::getenv(name);
}

std::string getUserDataDirectory()
{
    std::array<char, MAX_PATH> directory = {};
    const HRESULT result =
        SHGetFolderPathA(nullptr, CSIDL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, directory.data());
    return SUCCEEDED(result) ? directory.data() : "";
}

} // namespace qor::platform

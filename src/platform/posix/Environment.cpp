// SPDX-License-Identifier: MIT
#include "platform/Platform.h"

#include <cerrno>
#include <cstdlib>
#include <vector>

#include <pwd.h>
#include <unistd.h>

namespace qor::platform
{

namespace
{

std::string getVariableOrEmpty(const char* name)
{
    const char* const value = getEnvironmentVariable(name);
    return value ? value : "";
}

/// Returns the home directory of the password database; empty if the user has no entry there.
std::string getPasswdHome()
{
    constexpr std::size_t MAX_SIZE = std::size_t{1} << 20;
    std::vector<char> buffer(1024);
    passwd user = {};
    passwd* found = nullptr;
    while (getpwuid_r(getuid(), &user, buffer.data(), buffer.size(), &found) == ERANGE &&
           buffer.size() < MAX_SIZE) {
        buffer.resize(buffer.size() * 2);
    }
    return found && user.pw_dir ? user.pw_dir : "";
}

} // namespace

const char* getEnvironmentVariable(const char* name)
{
#if defined(QORTK_HAS_SECURE_GETENV)
    return secure_getenv(name);
#elif defined(QORTK_HAS_ISSETUGID)
    return issetugid() ? nullptr : std::getenv(name);
#else
    const bool isPrivileged = getuid() != geteuid() || getgid() != getegid();
    return isPrivileged ? nullptr : std::getenv(name);
#endif
}

std::string getUserDataDirectory()
{
    std::string dataHome = getVariableOrEmpty("XDG_DATA_HOME");
    if (!dataHome.empty() && dataHome.front() == '/') {
        return dataHome;
    }
    std::string home = getVariableOrEmpty("HOME");
    if (home.empty()) {
        home = getPasswdHome();
    }
    return home.empty() ? home : home + "/.local/share";
}

} // namespace qor::platform

// SPDX-License-Identifier: MIT
#include "platform/posix/ExtendedAttributes.h"

#ifdef QORTK_HAS_XATTR

#include <algorithm>
#include <cerrno>
#include <optional>
#include <string>
#include <vector>

#include <sys/xattr.h>

namespace qor::platform
{

namespace
{

using TNames = std::vector<std::string>;

/// The system's limit for a list of names and for a value.
constexpr std::size_t MAX_SIZE = 65536;

/// Returns the names of a file's attributes; nothing if they cannot be read.
std::optional<TNames> listAttributes(int file)
{
    std::string list(MAX_SIZE, '\0');
    const ssize_t size = flistxattr(file, list.data(), list.size());
    if (size < 0) {
        return errno == ENOTSUP || errno == ENOSYS ? std::make_optional<TNames>() : std::nullopt;
    }
    TNames names;
    const char* const end = list.data() + size;
    for (const char* name = list.data(); name < end; name += names.back().size() + 1) {
        names.emplace_back(name);
    }
    return names;
}

/// Returns the value of an attribute; nothing if it cannot be read.
std::optional<std::string> getAttribute(int file, const std::string& name)
{
    std::string value(MAX_SIZE, '\0');
    const ssize_t size = fgetxattr(file, name.c_str(), value.data(), value.size());
    if (size < 0) {
        return std::nullopt;
    }
    value.resize(static_cast<std::size_t>(size));
    return value;
}

bool copyAttribute(int from, int to, const std::string& name)
{
    const std::optional<std::string> value = getAttribute(from, name);
    return value && (getAttribute(to, name) == value ||
                     fsetxattr(to, name.c_str(), value->data(), value->size(), 0) == 0);
}

} // namespace

bool copyExtendedAttributes(int from, int to)
{
    const std::optional<TNames> source = listAttributes(from);
    const std::optional<TNames> current = listAttributes(to);
    if (!source || !current) {
        return false;
    }
    const bool isCopied = std::all_of(source->begin(), source->end(), [&](const std::string& name) {
        return copyAttribute(from, to, name);
    });
    // A new file may have inherited other attributes from its directory.
    return isCopied && std::all_of(current->begin(), current->end(), [&](const std::string& name) {
               return std::count(source->begin(), source->end(), name) > 0 ||
                      fremovexattr(to, name.c_str()) == 0;
           });
}

} // namespace qor::platform

#else

namespace qor::platform
{

bool copyExtendedAttributes(int, int)
{
    return true;
}

} // namespace qor::platform

#endif

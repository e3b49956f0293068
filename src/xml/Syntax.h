// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace qor
{

/// Returns whether a text begins with another text.
inline bool startsWith(std::string_view text, std::string_view start)
{
    return text.substr(0, start.size()) == start;
}

/// Returns whether an element of that name is a comment.
inline bool isComment(std::string_view name)
{
    return !name.empty() && name.front() == '!';
}

} // namespace qor

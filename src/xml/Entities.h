// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "xml/ByteSearch.h"

namespace qor
{

/// Replaces the entities of values, in a buffer that is used for all values of a document.
class Unescaper
{
public:
    /// Replaces entities by their bytes and drops other ampersands.
    /// @return the text, valid until the next call or as long as `value`
    std::string_view unescape(std::string_view value)
    {
        const char* const end = value.data() + value.size();
        const char* const ampersand = findByte(value.data(), end, '&');
        return ampersand == end
                   ? value
                   : unescape(value, static_cast<std::size_t>(ampersand - value.data()));
    }

private:
    std::string_view unescape(std::string_view value, std::size_t plainSize);

    std::string m_Buffer;
};

} // namespace qor

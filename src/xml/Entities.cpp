// SPDX-License-Identifier: MIT
#include "xml/Entities.h"

#include <cstdint>
#include <cstring>

#include "xml/Syntax.h"

namespace qor
{

namespace
{

struct TEntity {
    std::string_view text;
    char byte;
};

constexpr TEntity ENTITIES[] = {
    {"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}};

/// Writes the byte of the entity at the start of a text, if there is one.
/// @return the size of the entity; 1 if there is none, so that the caller drops the ampersand
std::size_t replaceEntity(std::string_view text, char*& target)
{
    for (const TEntity& entity : ENTITIES) {
        if (startsWith(text, entity.text)) {
            *target++ = entity.byte;
            return entity.text.size();
        }
    }
    return 1;
}

} // namespace

/// Unescapes a value whose first `plainSize` bytes have no ampersand. The loop
/// stores whole words, even if an entity begins inside; the next store overwrites its bytes. This
/// cannot overrun a buffer of the value's size: a word is copied only if it ends within the value,
/// and the target offset never exceeds the source offset, because no replacement is longer than its
/// entity.
std::string_view Unescaper::unescape(std::string_view value, std::size_t plainSize)
{
    if (m_Buffer.size() < value.size()) {
        m_Buffer.resize(value.size());
    }
    std::memcpy(m_Buffer.data(), value.data(), plainSize);
    char* target = m_Buffer.data() + plainSize;
    const char* source = value.data() + plainSize;
    const char* const end = value.data() + value.size();
    while (source != end) {
        const std::ptrdiff_t left = end - source;
        if (*source == '&') {
            source += replaceEntity({source, static_cast<std::size_t>(left)}, target);
        } else if (left < ByteWord::SIZE) {
            *target++ = *source++;
        } else {
            const ByteWord word(source);
            word.store(target);
            const std::uint64_t ampersands = word.matchMask('&');
            const std::ptrdiff_t count =
                ampersands == 0 ? ByteWord::SIZE : ByteWord::firstIndex(ampersands);
            source += count;
            target += count;
        }
    }
    return {m_Buffer.data(), static_cast<std::size_t>(target - m_Buffer.data())};
}

} // namespace qor

// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstring>
#include <new>
#include <string_view>

#include "qor/XMLElement.h"
#include "xml/ShortBytes.h"

namespace qor
{

/// The header of a block on the heap. The bytes of the text follow it.
struct XMLElement::TTextBlock {
    std::size_t size;
    std::size_t capacity;

    char* bytes() { return reinterpret_cast<char*>(this + 1); }
};

template<std::size_t CAPACITY>
inline XMLElement::Text<CAPACITY>::Text(std::string_view text)
{
    static_assert(CAPACITY >= sizeof(void*) && CAPACITY < IN_BLOCK);
    if (text.size() > CAPACITY) {
        assign(text);
        return;
    }
    copyBytes(m_Bytes, text.data(), text.size());
    m_Size = static_cast<unsigned char>(text.size());
}

template<std::size_t CAPACITY>
inline void XMLElement::Text<CAPACITY>::freeBlock() noexcept
{
    if (hasBlock()) {
        ::operator delete(block());
    }
}

template<std::size_t CAPACITY>
inline XMLElement::Text<CAPACITY>::operator std::string_view() const noexcept
{
    return hasBlock() ? std::string_view(block()->bytes(), block()->size)
                      : std::string_view(m_Bytes, m_Size);
}

template<std::size_t CAPACITY>
inline std::size_t XMLElement::Text<CAPACITY>::size() const noexcept
{
    return hasBlock() ? block()->size : m_Size;
}

template<std::size_t CAPACITY>
inline bool XMLElement::Text<CAPACITY>::empty() const noexcept
{
    return size() == 0;
}

template<std::size_t CAPACITY>
inline XMLElement::TTextBlock* XMLElement::Text<CAPACITY>::block() const noexcept
{
    void* memory = nullptr;
    std::memcpy(&memory, m_Bytes, sizeof memory);
    return static_cast<TTextBlock*>(memory);
}

} // namespace qor

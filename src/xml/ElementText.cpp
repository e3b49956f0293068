// SPDX-License-Identifier: MIT
#include "xml/ElementText.h"

#include <algorithm>
#include <new>
#include <utility>

namespace qor
{

template<std::size_t CAPACITY>
XMLElement::Text<CAPACITY>& XMLElement::Text<CAPACITY>::operator=(Text&& other) noexcept
{
    if (this == &other) {
        return *this;
    }
    freeBlock();
    std::memcpy(m_Bytes, other.m_Bytes, sizeof m_Bytes);
    m_Size = std::exchange(other.m_Size, static_cast<unsigned char>(0));
    return *this;
}

template<std::size_t CAPACITY>
void XMLElement::Text<CAPACITY>::assign(std::string_view text)
{
    if (text.size() > capacity()) {
        // Larger than this text, so not a part of it.
        moveToBlock(text.size(), 0);
    }
    copyBytes(bytes(), text.data(), text.size());
    setSize(text.size());
}

template<std::size_t CAPACITY>
void XMLElement::Text<CAPACITY>::append(std::string_view text)
{
    const std::size_t oldSize = size();
    const std::size_t newSize = oldSize + text.size();
    if (newSize > capacity()) {
        moveToBlock(std::max(newSize, 2 * capacity()), oldSize);
    }
    copyBytes(bytes() + oldSize, text.data(), text.size());
    setSize(newSize);
}

template<std::size_t CAPACITY>
void XMLElement::Text<CAPACITY>::clear() noexcept
{
    setSize(0);
}

template<std::size_t CAPACITY>
std::size_t XMLElement::Text<CAPACITY>::capacity() const noexcept
{
    return hasBlock() ? block()->capacity : CAPACITY;
}

template<std::size_t CAPACITY>
char* XMLElement::Text<CAPACITY>::bytes() noexcept
{
    return hasBlock() ? block()->bytes() : m_Bytes;
}

template<std::size_t CAPACITY>
void XMLElement::Text<CAPACITY>::setSize(std::size_t size) noexcept
{
    if (hasBlock()) {
        block()->size = size;
    } else {
        m_Size = static_cast<unsigned char>(size);
    }
}

/// Replaces the storage by a larger block and copies the first `size` bytes to it.
template<std::size_t CAPACITY>
void XMLElement::Text<CAPACITY>::moveToBlock(std::size_t capacity, std::size_t size)
{
    void* const memory = ::operator new(sizeof(TTextBlock) + capacity);
    // cppcheck-suppress legacyUninitvar ; placement new initializes the block
    auto* const newBlock = ::new (memory) TTextBlock{size, capacity};
    copyBytes(newBlock->bytes(), bytes(), size);
    freeBlock();
    std::memcpy(m_Bytes, &memory, sizeof memory);
    m_Size = IN_BLOCK;
}

template class XMLElement::Text<XMLElement::NAME_CAPACITY>;
template class XMLElement::Text<XMLElement::VALUE_CAPACITY>;

} // namespace qor

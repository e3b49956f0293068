// SPDX-License-Identifier: MIT
#include "xml/TextFile.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>

#include "platform/Platform.h"

namespace qor
{

namespace
{

constexpr std::size_t BLOCK_SIZE = 65536;

/// Enlarges the buffer of a text by at least a block. The first call uses the size of the file.
/// @return the new capacity
std::size_t enlarge(TFileText& text, std::uint64_t expectedSize)
{
    const std::size_t more = std::max(static_cast<std::size_t>(expectedSize), text.size);
    const std::size_t capacity = text.size + more + BLOCK_SIZE;
    std::unique_ptr<char[]> larger(new char[capacity]);
    std::copy_n(text.bytes.get(), text.size, larger.get());
    text.bytes = std::move(larger);
    return capacity;
}

} // namespace

bool readText(platform::InputFile& file, std::size_t maxSize, TFileText& text)
{
    std::size_t capacity = 0;
    while (text.size <= maxSize) {
        if (capacity - text.size < BLOCK_SIZE) {
            std::uint64_t expected = 0;
            if (capacity > 0 || file.getSize(expected) != 0 || expected > maxSize) {
                expected = 0;
            }
            capacity = enlarge(text, expected);
        }
        char* const block = text.bytes.get() + text.size;
        const std::size_t count = file.read(block, BLOCK_SIZE);
        const void* const zero = std::memchr(block, 0, count);
        if (zero) {
            text.size += static_cast<std::size_t>(static_cast<const char*>(zero) - block);
            return true;
        }
        text.size += count;
        if (count < BLOCK_SIZE) {
            return file.getError() == 0;
        }
    }
    return true;
}

} // namespace qor

// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace qor
{

// Most names and values have fewer than 16 bytes. The size is not known to the compiler, so
// std::memcpy and std::memcmp would be calls, which take longer than the work: parsing and writing
// of small elements take about a fifth less time with these functions.
//
// A text of at least a word's size is processed as words, the last of which overlaps the one before
// it.

/// Copies at least a word and at most two words.
template<typename TWord>
inline void copyTwoWords(char* target, const char* source, std::size_t size)
{
    TWord first, last;
    std::memcpy(&first, source, sizeof first);
    std::memcpy(&last, source + size - sizeof last, sizeof last);
    std::memcpy(target, &first, sizeof first);
    std::memcpy(target + size - sizeof last, &last, sizeof last);
}

/// Copies bytes. Source and target may overlap.
inline void copyBytes(char* target, const char* source, std::size_t size)
{
    struct TDoubleWord {
        std::uint64_t words[2];
    };
    if (size > 2 * sizeof(TDoubleWord)) {
        std::memmove(target, source, size);
    } else if (size >= sizeof(TDoubleWord)) {
        copyTwoWords<TDoubleWord>(target, source, size);
    } else if (size >= sizeof(std::uint64_t)) {
        copyTwoWords<std::uint64_t>(target, source, size);
    } else if (size >= sizeof(std::uint32_t)) {
        copyTwoWords<std::uint32_t>(target, source, size);
    } else if (size >= sizeof(std::uint16_t)) {
        copyTwoWords<std::uint16_t>(target, source, size);
    } else if (size > 0) {
        *target = *source;
    }
}

/// Returns whether two texts of the same size, at least that of a word, are equal.
template<typename TWord>
inline bool hasSameWords(const char* text, const char* other, std::size_t size)
{
    const auto word = [](const char* bytes) {
        TWord value;
        std::memcpy(&value, bytes, sizeof value);
        return value;
    };
    const std::size_t last = size - sizeof(TWord);
    for (std::size_t i = 0; i < last; i += sizeof(TWord)) {
        if (word(text + i) != word(other + i)) {
            return false;
        }
    }
    return word(text + last) == word(other + last);
}

/// Returns whether two texts have the same bytes.
inline bool equalBytes(std::string_view text, std::string_view other)
{
    const std::size_t size = text.size();
    if (size != other.size()) {
        return false;
    }
    if (size >= sizeof(std::uint64_t)) {
        return hasSameWords<std::uint64_t>(text.data(), other.data(), size);
    }
    if (size >= sizeof(std::uint32_t)) {
        return hasSameWords<std::uint32_t>(text.data(), other.data(), size);
    }
    return size == 0 || hasSameWords<char>(text.data(), other.data(), size);
}

} // namespace qor

// SPDX-License-Identifier: MIT
#include "shared/Text.h"

#include <algorithm>
#include <sstream>

namespace
{

bool isContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0u) == 0x80u;
}

/// Returns the size of the valid UTF-8 sequence at `position`, or 0. Overlong forms, surrogates and
/// numbers above 0x10FFFF are not valid (The Unicode Standard, table 3-7).
std::size_t measureSequence(const std::string& text, std::size_t position)
{
    const auto lead = static_cast<unsigned char>(text[position]);
    if (lead < 0x80) {
        return 1;
    }
    if (lead < 0xC2 || lead > 0xF4) {
        return 0;
    }
    const std::size_t size = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (text.size() - position < size) {
        return 0;
    }
    for (std::size_t i = 1; i < size; ++i) {
        if (!isContinuation(text[position + i])) {
            return 0;
        }
    }
    // After these lead bytes, the range of the second byte is smaller.
    const auto second = static_cast<unsigned char>(text[position + 1]);
    const bool isValid = lead == 0xE0   ? second >= 0xA0
                         : lead == 0xED ? second < 0xA0
                         : lead == 0xF0 ? second >= 0x90
                         : lead == 0xF4 ? second < 0x90
                                        : true;
    return isValid ? size : 0;
}

/// Returns whether the valid character of `size` bytes is one of U+0000 to U+001F or U+007F to
/// U+009F.
bool isControl(const std::string& text, std::size_t position, std::size_t size)
{
    const auto first = static_cast<unsigned char>(text[position]);
    if (size == 1) {
        return first < 0x20 || first == 0x7F;
    }
    return first == 0xC2 && static_cast<unsigned char>(text[position + 1]) < 0xA0;
}

void appendHex(std::string& text, char byte)
{
    constexpr const char* DIGITS = "0123456789ABCDEF";
    const auto number = static_cast<unsigned char>(byte);
    text += "\\x";
    text += DIGITS[number >> 4];
    text += DIGITS[number & 0xF];
}

} // namespace

std::string quote(const std::string& text)
{
    return "'" + text + "'";
}

std::string toPrintable(const std::string& text)
{
    std::string result;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t size = measureSequence(text, i);
        const std::size_t end = i + std::max<std::size_t>(size, 1);
        if (text[i] == '\t' || text[i] == '\n' || text[i] == '\r') {
            result += ' ';
        } else if (size > 0 && !isControl(text, i, size)) {
            result.append(text, i, size);
        } else {
            std::for_each(text.begin() + static_cast<std::ptrdiff_t>(i),
                          text.begin() + static_cast<std::ptrdiff_t>(end),
                          [&result](char byte) { appendHex(result, byte); });
        }
        i = end;
    }
    return result;
}

std::size_t nextCharacter(const std::string& text, std::size_t position)
{
    do {
        ++position;
    } while (position < text.size() && isContinuation(text[position]));
    return std::min(position, text.size());
}

std::size_t previousCharacter(const std::string& text, std::size_t position)
{
    while (position > 0 && isContinuation(text[--position])) {
    }
    return position;
}

std::vector<std::string> wrapWords(const std::string& text, std::size_t width)
{
    std::vector<std::string> lines;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        if (!lines.empty() && lines.back().size() + 1 + word.size() <= width) {
            lines.back() += ' ' + word;
        } else {
            lines.push_back(word);
        }
    }
    return lines;
}

// SPDX-License-Identifier: MIT
#include "LineWrapper.h"

#include <algorithm>
#include <cwchar>

#include "shared/Text.h"

namespace
{

/// Returns the columns of the character in the bytes from `begin` to `end`.
int measureCharacter(const std::string& text, std::size_t begin, std::size_t end)
{
    wchar_t character = 0;
    std::mbstate_t state = {};
    const std::size_t size = std::mbrtowc(&character, text.data() + begin, end - begin, &state);
    return size == end - begin ? std::max(wcwidth(character), 0) : static_cast<int>(end - begin);
}

} // namespace

int measureColumns(const std::string& text)
{
    int columns = 0;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t end = nextCharacter(text, i);
        columns += measureCharacter(text, i, end);
        i = end;
    }
    return columns;
}

std::vector<std::string> splitRows(const std::string& text, int columns)
{
    std::vector<std::string> rows;
    std::size_t begin = 0, afterBlank = 0;
    int used = 0;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t end = nextCharacter(text, i);
        const int width = measureCharacter(text, i, end);
        if (used + width > columns && i > begin) {
            // A long word is broken.
            const std::size_t stop = afterBlank > begin ? afterBlank : i;
            rows.push_back(text.substr(begin, stop - begin));
            begin = stop;
            used = measureColumns(text.substr(begin, i - begin));
        }
        used += width;
        i = end;
        if (text[i - 1] == ' ') {
            afterBlank = i;
        }
    }
    rows.push_back(text.substr(begin));
    return rows;
}

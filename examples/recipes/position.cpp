// SPDX-License-Identifier: MIT
// Turns the position of a parser error into a line and a column.
#include <algorithm>
#include <iostream>
#include <string>

#include <qor/XMLElement.h>

struct TPosition {
    std::size_t line;
    std::size_t column;
};

/// Counts from 1. The column is a number of bytes.
static TPosition findPosition(const std::string& text, std::size_t offset)
{
    const std::string before = text.substr(0, offset);
    const auto lineFeeds = std::count(before.begin(), before.end(), '\n');
    const std::size_t lineBegin = before.rfind('\n') + 1; // 0 if there is no line feed
    return {static_cast<std::size_t>(lineFeeds) + 1, before.size() - lineBegin + 1};
}

int main()
{
    const std::string text = "<harbour>\n"
                             "  <ship>Aurora</ship>\n"
                             "  <ship>Bella</boat>\n"
                             "</harbour>\n";
    qor::XMLElement harbour("");
    const int result = harbour.parse(text);
    if (result < 0) {
        // The negated number of bytes read. The last of them is the error, here the end of a tag.
        const TPosition position = findPosition(text, static_cast<std::size_t>(-result - 1));
        std::cout << "line " << position.line << ", column " << position.column << ": "
                  << qor::XMLElement::getLastError() << '\n';
    }
}

// SPDX-License-Identifier: MIT
#include "platform/posix/DialogText.h"

namespace qor::platform
{

namespace
{

constexpr std::string_view ELLIPSIS = "\xE2\x80\xA6";
constexpr std::string_view REPLACEMENT_CHARACTER = "\xEF\xBF\xBD";

bool isBetween(char byte, int minimum, int maximum)
{
    const int value = static_cast<unsigned char>(byte);
    return value >= minimum && value <= maximum;
}

/// Returns the length of the character at the beginning of a text, which is not empty; 0 if it is
/// not valid UTF-8. The limits are those of table 3-7, "Well-Formed UTF-8 Byte Sequences", of the
/// Unicode Standard.
std::size_t getCharacterLength(std::string_view text)
{
    constexpr struct {
        int firstMinimum, firstMaximum, secondMinimum, secondMaximum;
        std::size_t length;
    } FORMS[] = {
        {0x00, 0x7F, 0, 0, 1},       {0xC2, 0xDF, 0x80, 0xBF, 2}, {0xE0, 0xE0, 0xA0, 0xBF, 3},
        {0xE1, 0xEC, 0x80, 0xBF, 3}, {0xED, 0xED, 0x80, 0x9F, 3}, {0xEE, 0xEF, 0x80, 0xBF, 3},
        {0xF0, 0xF0, 0x90, 0xBF, 4}, {0xF1, 0xF3, 0x80, 0xBF, 4}, {0xF4, 0xF4, 0x80, 0x8F, 4}};
    for (const auto& form : FORMS) {
        if (!isBetween(text[0], form.firstMinimum, form.firstMaximum)) {
            continue;
        }
        if (text.size() < form.length ||
            (form.length > 1 && !isBetween(text[1], form.secondMinimum, form.secondMaximum))) {
            return 0;
        }
        for (std::size_t i = 2; i < form.length; ++i) {
            if (!isBetween(text[i], 0x80, 0xBF)) {
                return 0;
            }
        }
        return form.length;
    }
    return 0;
}

/// Returns the markup for a character of a rich text.
/// @param previous the byte before the character
std::string_view encodeMarkup(std::string_view character, char previous)
{
    switch (character[0]) {
    case '<':
        return "&lt;";
    case '&':
        return "&amp;";
    case '\n':
        return "<br>";
    case ' ':
        // Rich text collapses adjacent blanks and drops those at the beginning of a line.
        return previous == ' ' || previous == '\n' ? "&nbsp;" : " ";
    default:
        return character;
    }
}

} // namespace

std::string makeDialogText(std::string_view text, TextFormat format)
{
    constexpr std::size_t MAX_SIZE = 65536;
    const bool isMarkup =
        format == TextFormat::RICH_TEXT && text.find_first_of("<&") != std::string_view::npos;
    std::string result = isMarkup ? "<qt>" : "";
    char previous = '\n';
    while (!text.empty()) {
        const std::size_t length = getCharacterLength(text);
        std::string_view encoded = length == 0 ? REPLACEMENT_CHARACTER : text.substr(0, length);
        if (encoded == "\\" && format != TextFormat::PLAIN) {
            encoded = "\\\\";
        } else if (isMarkup) {
            encoded = encodeMarkup(encoded, previous);
        }
        if (result.size() + encoded.size() > MAX_SIZE) {
            result += ELLIPSIS;
            break;
        }
        result += encoded;
        previous = text.front();
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return isMarkup ? result + "</qt>" : result;
}

} // namespace qor::platform

// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// Returns the text between single quotation marks.
std::string quote(const std::string& text);

/// Returns the text as one line that a terminal can show: each byte of a control character and each
/// byte that is not valid UTF-8 becomes `\xNN`; a tab or a line break becomes a blank.
std::string toPrintable(const std::string& text);

/// Returns the position after the UTF-8 character at `position`; at most the text's size.
std::size_t nextCharacter(const std::string& text, std::size_t position);

/// Returns the position of the UTF-8 character that ends before `position`; 0 at the start.
std::size_t previousCharacter(const std::string& text, std::size_t position);

/// Breaks a text between words into lines of at most `width` bytes. A longer word gets its
/// own line. Several blanks count as one.
std::vector<std::string> wrapWords(const std::string& text, std::size_t width);

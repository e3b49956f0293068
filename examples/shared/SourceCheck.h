// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

/// A place in a text, counted from 1. Columns count UTF-8 characters.
struct TTextPlace {
    std::size_t line;
    std::size_t column;
};

/// Returns the line and column of a byte in a text.
/// @param position the index of the byte, from 0
TTextPlace findPlace(const std::string& text, std::size_t position);

/// Returns an error message for a failed load, with line and column of a syntax error and the last
/// error of qor::XMLElement.
/// @param source the content of the file; empty if it is unknown
/// @param result the negative result of XMLElement::load or parse
std::string describeLoadError(const std::string& filename, const std::string& source, int result);

/// Searches an XML document for the first construct that loading accepts but saving does not keep,
/// such as a CDATA section or a character reference.
/// @param source the text that was parsed
/// @param end the result of XMLElement::parse
/// @return a description of the construct with its line; empty if saving keeps the whole document
std::string findUnsupported(const std::string& source, std::size_t end);

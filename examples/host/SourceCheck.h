#pragma once

#include <cstddef>
#include <string>

/// A place in a text, counted from 1. Columns count UTF-8 characters.
struct TTextPlace {
    std::size_t line;
    std::size_t column;
};

/// Converts a position in a text, counted from 0.
TTextPlace findPlace(const std::string& text, std::size_t position);

/// Searches an XML document for the first construct that loading accepts but saving does not write
/// again, such as a CDATA section or a character reference.
/// @param source the text that was parsed
/// @param end the result of XMLElement::parse
/// @return a description of the construct with its line; empty if saving keeps the document
std::string findUnsupported(const std::string& source, std::size_t end);

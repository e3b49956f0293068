// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <qor/XMLElement.h>

/// A place in a text, counted from 1. Columns count UTF-8 characters.
struct TTextPlace {
    std::size_t line;
    std::size_t column;
};

/// Returns the line and column of a byte in a text.
/// @param position the index of the byte, from 0
TTextPlace findPlace(const std::string& text, std::size_t position);

/// Returns an error message about a place of a file, with line and column.
/// @param source the content of the file
/// @param position the index of the byte, from 0
std::string describeErrorAt(const std::string& filename, const std::string& source,
                            std::size_t position, const std::string& reason);

/// Returns an error message for a failed load, with line and column of a syntax error and the last
/// error of qor::XMLElement.
/// @param source the content of the file; empty if it is unknown
/// @param result the negative result of XMLElement::load or parse
std::string describeLoadError(const std::string& filename, const std::string& source, int result);

/// The way from the root of a document to an element: the number of a child, a child of that, and so
/// on, counted from 1. The root has no numbers.
using TElementNumbers = std::vector<std::size_t>;

/// Returns the way to an element that does not match the template, such as the one with a value that
/// is too long, and sets the last error of qor::XMLElement to the reason. An element deeper than 16
/// levels is represented by its ancestor on that level. Names must not repeat in the template.
/// @return the way; empty for the root, or if the document matches
TElementNumbers findMismatch(const qor::XMLElement& document, const qor::XMLElement& templateRoot);

/// Returns the position of an element's tag in the text from which the document was parsed; 0 if
/// there is no such element.
std::size_t findElement(const std::string& source, const TElementNumbers& numbers);

/// Searches an XML document for the first construct that loading accepts but saving does not keep,
/// such as a CDATA section or a character reference.
/// @param source the text that was parsed
/// @param end the result of XMLElement::parse
/// @return a description of the construct with its line; empty if saving keeps the whole document
std::string findUnsupported(const std::string& source, std::size_t end);

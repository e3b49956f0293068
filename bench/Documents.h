#pragma once

#include <string>

/// The texts that the contestants work on, made anew in each run and always the same.
namespace documents
{

/// Records of six short fields, formatted, about `size` bytes.
std::string flatRecords(std::size_t size);

/// Paragraphs of a page each, with an entity every few words, about `size` bytes.
std::string textWithEntities(std::size_t size);

/// Records with a comment before each of them, formatted, about `size` bytes.
std::string recordsWithComments(std::size_t size);

/// Elements that contain each other and nothing else but a text in the innermost, not formatted.
std::string nestedElements(std::size_t levels);

/// A configuration of about 4 KB, in groups.
std::string configuration();

} // namespace documents

// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/// Generates the input texts of the benchmarks. The random numbers have a fixed seed, so every run
/// has the same texts.
namespace documents
{

/// Returns formatted records of six short fields, with about `size` bytes in total.
std::string flatRecords(std::size_t size);

/// Returns long paragraphs with an entity every few words, with about `size` bytes in total.
std::string textWithEntities(std::size_t size);

/// Records with a comment before each of them, formatted, about `size` bytes.
std::string recordsWithComments(std::size_t size);

/// Elements that contain each other and nothing else but a text in the innermost, not formatted.
std::string nestedElements(std::size_t levels);

/// A configuration of about 4 KB, in groups.
std::string configuration();

} // namespace documents

#pragma once

#include <filesystem>
#include <string>

#include <qor/XMLElement.h>

/// Loads an element.
/// @return why that failed, with the line and the column of a syntax error; empty on success
std::string loadElement(const std::string& filename, qor::XMLElement& element);

/// Saves an element and checks that the file has received the whole text.
/// @param size receives the number of bytes written
/// @return why that failed; empty on success
std::string saveElement(const qor::XMLElement& element, const std::string& filename,
                        bool isFormatted, int& size);

/// Returns when a file was last written; the earliest time if it is unknown.
std::filesystem::file_time_type getWriteTime(const std::string& filename);

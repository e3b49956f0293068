// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>

#include <qor/XMLElement.h>

/// Returns the content of a regular file; empty if there is none or it cannot be read.
std::string readText(const std::string& filename);

/// Loads an element.
/// @return an error message, with line and column of a syntax error; empty on success
std::string loadElement(const std::string& filename, qor::XMLElement& element);

/// Saves an element and checks that the file contains the whole text. Keeps a copy of the file if it
/// loses its old content without having the new one.
/// @param size receives the number of bytes written
/// @return an error message; empty on success
std::string saveElement(const qor::XMLElement& element, const std::string& filename,
                        bool isFormatted, int& size);

/// Returns the time of the last write to a file; the minimum time if it is unknown.
std::filesystem::file_time_type getWriteTime(const std::string& filename);

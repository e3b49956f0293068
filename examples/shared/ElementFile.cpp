// SPDX-License-Identifier: MIT
#include "shared/ElementFile.h"

#include <fstream>
#include <iterator>
#include <system_error>

#include "shared/FileCopy.h"
#include "shared/SourceCheck.h"
#include "shared/Text.h"

std::string readText(const std::string& filename)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(filename, error)) {
        return "";
    }
    std::ifstream file(filename, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string loadElement(const std::string& filename, qor::XMLElement& element)
{
    const int result = element.load(filename);
    return result < 0 ? describeLoadError(filename, readText(filename), result) : "";
}

/// Saves an element and checks the file.
/// @return an error message; empty on success
static std::string writeElement(const qor::XMLElement& element, const std::string& filename,
                                bool isFormatted, int& size)
{
    size = element.save(filename, isFormatted);
    if (size < 0) {
        return qor::XMLElement::getLastError();
    }
    // `save` reports only whether the file could be opened. A failed write shows in the file, which
    // may have its old content.
    return readText(filename) == element.toString(isFormatted)
               ? ""
               : "the file does not have the new content. Is the disk full?";
}

std::string saveElement(const qor::XMLElement& element, const std::string& filename,
                        bool isFormatted, int& size)
{
    FileCopy copy;
    std::string error = copy.create(filename);
    if (error.empty()) {
        error = writeElement(element, filename, isFormatted, size);
    }
    const std::string copyName = copy.remove(error.empty());
    if (!copyName.empty()) {
        error += " Its old content is in " + quote(copyName);
    }
    return error.empty() ? "" : "Cannot save " + quote(filename) + ": " + error;
}

std::filesystem::file_time_type getWriteTime(const std::string& filename)
{
    std::error_code error;
    const auto time = std::filesystem::last_write_time(filename, error);
    return error ? std::filesystem::file_time_type::min() : time;
}

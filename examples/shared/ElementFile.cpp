// SPDX-License-Identifier: MIT
#include "shared/ElementFile.h"

#include <fstream>
#include <iterator>
#include <system_error>

#include <qor/File.h>

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

std::string saveElement(const qor::XMLElement& element, const std::string& filename,
                        bool isFormatted, int& size)
{
    size = element.save(filename, isFormatted);
    if (size < 0) {
        return "Cannot save " + quote(filename) + ": " + qor::XMLElement::getLastError();
    }
    // `save` reports only whether the file could be opened. A failed write shows in the file.
    const unsigned int fileSize = qor::File::fileSize(filename);
    if (fileSize != static_cast<unsigned int>(size)) {
        return "Cannot save " + quote(filename) + ": the file has " + std::to_string(fileSize) +
               " of " + std::to_string(size) + " bytes. Is the disk full?";
    }
    // A file that could not be replaced has its old content, which may have the same size.
    if (readText(filename) != element.toString(isFormatted)) {
        return "Cannot save " + quote(filename) +
               ": the file still has its old content. Is the disk full?";
    }
    return "";
}

std::filesystem::file_time_type getWriteTime(const std::string& filename)
{
    std::error_code error;
    const auto time = std::filesystem::last_write_time(filename, error);
    return error ? std::filesystem::file_time_type::min() : time;
}

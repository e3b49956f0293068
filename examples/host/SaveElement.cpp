#include "SaveElement.h"

#include <system_error>

#include <qor/File.h>

#include "shared/Text.h"

std::string saveElement(const qor::XMLElement& element, const std::string& filename,
                        bool isFormatted, int& size)
{
    size = element.save(filename, isFormatted);
    if (size < 0) {
        return "Cannot save " + quote(filename) + ": " + qor::XMLElement::getLastError();
    }
    // `save` reports only whether the file could be opened. A full disk shows in the size.
    const unsigned int fileSize = qor::File::fileSize(filename);
    if (fileSize != static_cast<unsigned int>(size)) {
        return "Cannot save " + quote(filename) + ": the file has " + std::to_string(fileSize) +
               " of " + std::to_string(size) + " bytes. Is the disk full?";
    }
    return "";
}

std::filesystem::file_time_type getWriteTime(const std::string& filename)
{
    std::error_code error;
    const auto time = std::filesystem::last_write_time(filename, error);
    return error ? std::filesystem::file_time_type::min() : time;
}

// SPDX-License-Identifier: MIT
#include "qor/File.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <limits>

#include "platform/Platform.h"
#include "qor/Log.h"

namespace qor
{

namespace
{

/// Checks a path before `std::remove`, which reads a path up to its first zero byte and also
/// deletes directories.
/// @return EINVAL for a path with a zero byte, EISDIR for a directory, otherwise 0
int checkFilePath(const std::string& path)
{
    if (path.find('\0') != std::string::npos) {
        return EINVAL;
    }
    return File::directoryExists(path) ? EISDIR : 0;
}

/// Writes an error to the log if a file is not open.
/// @return true if the file is not open
bool logOpenFailure(const platform::InputFile& file, const std::string& path)
{
    if (file.getError() == 0) {
        return false;
    }
    Log::error("Unable to open file '" + path + "': " + platform::getErrorText(file.getError()));
    return true;
}

void logCreationFailure(const std::string& path, int error)
{
    Log::error("Directory (" + path + ") creation failed: " + platform::getErrorText(error));
}

/// Creates a directory that only the user can access, unless the directory exists.
/// @return whether the directory exists
bool createPrivateDirectory(const std::string& path)
{
    if (File::directoryExists(path)) {
        return true;
    }
    const int error = platform::createDirectory(path, platform::Access::USER_ONLY);
    // Another process may have created the directory after the first check.
    if (error == 0 || File::directoryExists(path)) {
        return true;
    }
    logCreationFailure(path, error);
    return false;
}

} // namespace

bool File::createDirectory(const std::string& path)
{
    const int error = platform::createDirectory(path, platform::Access::EVERYONE);
    if (error != 0) {
        logCreationFailure(path, error);
    }
    return error == 0;
}

bool File::fileExists(const std::string& path)
{
    return platform::getPathKind(path) == platform::PathKind::FILE;
}

bool File::directoryExists(const std::string& path)
{
    return platform::getPathKind(path) == platform::PathKind::DIRECTORY;
}

bool File::deleteFile(const std::string& path)
{
    int error = checkFilePath(path);
    if (error == 0 && std::remove(path.c_str()) != 0) {
        error = errno;
    }
    if (error != 0) {
        Log::error("File '" + path + "' deletion failed: " + platform::getErrnoText(error));
    }
    return error == 0;
}

bool File::renameFile(const std::string& oldPath, const std::string& newPath)
{
    const bool isValid = (oldPath + newPath).find('\0') == std::string::npos;
    if (isValid && std::rename(oldPath.c_str(), newPath.c_str()) == 0) {
        return true;
    }
    const int error = isValid ? errno : EINVAL;
    Log::error("File '" + oldPath + "' renaming to '" + newPath +
               "' failed: " + platform::getErrnoText(error));
    return false;
}

unsigned int File::fileTime(const std::string& path)
{
    const platform::InputFile file(path, platform::InputFile::Kind::ATTRIBUTES);
    if (logOpenFailure(file, path)) {
        return 0;
    }
    std::int64_t second = 0;
    const int error = file.getWriteTime(second);
    if (error != 0) {
        Log::error("Unable to get last write time for file '" + path +
                   "': " + platform::getErrorText(error));
        return 0;
    }
    constexpr std::int64_t MAXIMUM = std::numeric_limits<unsigned int>::max();
    return static_cast<unsigned int>(std::clamp<std::int64_t>(second, 0, MAXIMUM));
}

unsigned int File::fileSize(const std::string& path)
{
    const platform::InputFile file(path, platform::InputFile::Kind::ATTRIBUTES);
    if (logOpenFailure(file, path)) {
        return 0;
    }
    std::uint64_t size = 0;
    const int error = file.getSize(size);
    if (error != 0) {
        Log::error("Unable to get size for file '" + path + "': " + platform::getErrorText(error));
        return 0;
    }
    return static_cast<unsigned int>(size);
}

std::string File::standardizePath(const std::string& path)
{
    std::string standard = path;
    std::replace(standard.begin(), standard.end(), '\\', '/');
    standard.resize(standard.find_last_not_of('/') + 1);
    return standard;
}

std::string File::filePath(const std::string& directory, const std::string& file)
{
    return directory.empty() ? file : directory + "/" + file;
}

std::string File::getUserDataDirectory(const std::string& name, bool create)
{
    std::string directory;
    if (const char* const variable = platform::getEnvironmentVariable("QOR_USER_DATA_DIR")) {
        directory = variable;
    } else {
        directory = platform::getUserDataDirectory();
        if (!directory.empty()) {
            directory += "/" + name;
        }
    }
    if (directory.empty()) {
        Log::error(std::string("Unable to determine user data directory"));
        return directory;
    }
    directory = standardizePath(directory);
    if (create && !createPrivateDirectory(directory)) {
        directory.clear();
    }
    return directory;
}

} // namespace qor

#pragma once

#include <string>

#include "qor/Export.h"

namespace qor
{

/// Questions and changes about files, directories and their paths.
///
/// All operations are static, keep no state, throw nothing but `std::bad_alloc` and may be called
/// from any thread. A failure shows in the result, and most also as an error in the `Log`, with the
/// system's own words for it. Paths are byte strings in the system's narrow character set; one with
/// a zero byte in it names nothing. Links are followed.
///
/// @code
/// const std::string directory = qor::File::getUserDataDirectory("myhost", true);
/// if (directory.empty()) {
///     return; // such as in a new account without ~/.local/share
/// }
/// const std::string file = qor::File::filePath(directory, "settings.xml");
/// if (qor::File::fileExists(file)) {
///     qor::Log::info("Settings of %u bytes", qor::File::fileSize(file));
/// }
/// @endcode
class QORTK_API File
{
public:
    File() = delete;

    /// Creates one directory, whose parent has to exist.
    /// @return false if it was not created, which is also so if it exists
    static bool createDirectory(const std::string& path);

    /// @return whether the path exists and is not a directory
    static bool fileExists(const std::string& path);

    /// @return whether the path exists and is a directory
    static bool directoryExists(const std::string& path);

    /// Deletes a file. A directory is no file, not even an empty one, and is left alone. Of a link
    /// to a file, the link is deleted.
    /// @return whether the file is gone by this call
    static bool deleteFile(const std::string& path);

    /// Renames or moves a file or directory as std::rename does: on POSIX systems a file that has
    /// the new name already is replaced.
    /// @return whether it has the new name
    static bool renameFile(const std::string& oldPath, const std::string& newPath);

    /// Tells when a file was last written, in seconds since the start of 1970 in UTC. A time from
    /// before is told as 0, one behind the year 2105 as the greatest number.
    /// @return 0 if the path is no file that can be opened for reading
    static unsigned int fileTime(const std::string& path);

    /// Tells the size of a file in bytes, modulo 2 to the power of 32.
    /// @return 0 if the path is no file that can be opened for reading
    static unsigned int fileSize(const std::string& path);

    /// @return the path with each backslash as "/", and without "/" at its end; all else stays
    static std::string standardizePath(const std::string& path);

    /// @return directory, "/" and file; only the file if the directory is empty
    static std::string filePath(const std::string& directory, const std::string& file);

    /// Tells where a host keeps the user's data: the value of the environment variable
    /// QOR_USER_DATA_DIR if that exists, else the folder `name` in the place that the system has
    /// for such data. On POSIX systems this is XDG_DATA_HOME if that holds an absolute path, else
    /// .local/share in the home directory.
    /// @param name   the host's name
    /// @param create whether to create the directory if it does not exist. Its parent has to.
    /// @return the standardized path; empty if it cannot be told or created
    static std::string getUserDataDirectory(const std::string& name, bool create);
};

} // namespace qor

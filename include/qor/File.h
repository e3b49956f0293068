// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "qor/Export.h"

namespace qor
{

/// Operations on files, directories and their paths.
///
/// A path is a byte string in the system's narrow character set. On Windows that is the ANSI code
/// page, unless the program's manifest selects UTF-8: see @ref install. A path that contains a zero
/// byte names no file, and every operation on it fails. All operations follow symbolic links,
/// except deleteFile() and renameFile().
///
/// **Error handling**: an operation that fails returns false, 0 or an empty text and writes an
/// error with the path and the system's message to the `Log`. Only `std::bad_alloc` is ever thrown.
///
/// **Thread safety**: all operations are static and keep no state. Any thread may call them.
///
/// **Security**: in a directory that other users may write to, such as /tmp, another user can put a
/// symbolic link in place of a file between two calls. Keep files in a directory that only the user
/// may write to, such as the one that getUserDataDirectory() creates. The log gets paths unchanged:
/// refuse a path of unknown origin that has line feeds or control characters, or it can forge
/// records, see `Log`.
///
/// @code
/// const std::string directory = qor::File::getUserDataDirectory("myhost", true);
/// if (directory.empty()) {
///     qor::Log::error("Settings cannot be stored"); // for example, no ~/.local/share yet
///     return;
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

    /// Creates one directory.
    /// @param path the directory. Its parent directory must exist. Its permissions follow the file
    ///             mode creation mask of the process.
    /// @return true on success; false, with an error in the log, if the path exists already or the
    ///         directory cannot be created
    static bool createDirectory(const std::string& path);

    /// Checks whether a path exists and is not a directory. Writes nothing to the log.
    /// @param path the file
    /// @return true for a file of any type; false also if the system does not permit the check
    [[nodiscard]] static bool fileExists(const std::string& path);

    /// Checks whether a path exists and is a directory. Writes nothing to the log.
    /// @param path the directory
    /// @return true for a directory; false also if the system does not permit the check
    [[nodiscard]] static bool directoryExists(const std::string& path);

    /// Deletes a file. If the path is a symbolic link to a file, deletes the link.
    /// @param path the file. For a directory, or a symbolic link to one, the operation fails.
    /// @return true on success; false, with an error in the log, on failure
    static bool deleteFile(const std::string& path);

    /// Renames or moves a file or directory, as `std::rename` does. If the old path is a symbolic
    /// link, renames the link.
    /// @param oldPath the existing file or directory
    /// @param newPath its new path, on the same file system. An existing file with this path is
    ///                replaced on POSIX systems; on Windows the operation fails.
    /// @return true on success; false, with an error in the log, on failure
    [[nodiscard]] static bool renameFile(const std::string& oldPath, const std::string& newPath);

    /// Returns the time of the last write to a file.
    /// @param path the file, which must be readable
    /// @return seconds since the start of 1970 in UTC, clamped to the range of the type; 0, with an
    ///         error in the log, on failure
    [[nodiscard]] static unsigned int fileTime(const std::string& path);

    /// Returns the size of a file.
    /// @param path the file, which must be readable
    /// @return bytes, modulo 2 to the power of 32; 0, with an error in the log, on failure
    [[nodiscard]] static unsigned int fileSize(const std::string& path);

    /// Replaces each backslash in a path by a slash and removes all slashes at its end.
    /// @param path the path, which need not exist
    /// @return the changed path; empty for a path of slashes only
    [[nodiscard]] static std::string standardizePath(const std::string& path);

    /// Joins a directory and a file name with a slash.
    /// @param directory the directory; may be empty
    /// @param file      the file's name or relative path
    /// @return the joined path; `file` if the directory is empty
    [[nodiscard]] static std::string filePath(const std::string& directory,
                                              const std::string& file);

    /// Returns the directory in which a program stores data of its user.
    ///
    /// If the environment variable `QOR_USER_DATA_DIR` is set, its value is the directory; an empty
    /// value is an error. Otherwise the directory is a subdirectory of the system's directory for
    /// user data. On POSIX systems, that is `XDG_DATA_HOME` if this variable contains an absolute
    /// path, or `.local/share` in the home directory. Set-user-ID programs ignore all environment
    /// variables.
    /// @param name   the name of the program, and of the subdirectory
    /// @param create true creates the directory if it does not exist. Its parent directory must
    ///               exist. Only the user may access the new directory (mode 0700). Several
    ///               processes may create it at the same time.
    /// @return the directory in the form of standardizePath(); empty, with an error in the log, if
    ///         it cannot be determined or created
    static std::string getUserDataDirectory(const std::string& name, bool create);
};

} // namespace qor

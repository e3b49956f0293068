// SPDX-License-Identifier: MIT
#include "platform/Platform.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <string>

#include <fcntl.h>

#include "platform/posix/ExtendedAttributes.h"
#include "platform/posix/FileDescriptor.h"

namespace qor::platform
{

namespace
{

/// Returns whether an error means that the disk is full or damaged. Writing in place would then
/// lose the old content without storing the new one.
bool isDiskFailure(int error)
{
    return error == ENOSPC || error == EDQUOT || error == EIO;
}

/// Waits until a file or directory is stored on the disk.
/// @return false if the disk is full or damaged; true also if the file system does not support
///         flushing
bool flush(int descriptor)
{
    while (fsync(descriptor) != 0) {
        if (errno != EINTR) {
            return !isDiskFailure(errno);
        }
    }
    return true;
}

/// Returns whether a symbolic link is one of the kernel's links to open files, such as the target
/// of /dev/stdout. Such a file is not replaced, because the open stream would continue to write to
/// the old file.
bool isKernelLink(const std::string& link)
{
    struct stat linkStatus, kernelStatus;
    return lstat(link.c_str(), &linkStatus) == 0 && stat("/proc", &kernelStatus) == 0 &&
           linkStatus.st_dev == kernelStatus.st_dev;
}

/// A path split after its last slash.
struct TPathParts {
    std::string directory; ///< ends with the slash; empty if there is no slash
    std::string name;
};

TPathParts splitPath(const std::string& path)
{
    const std::size_t nameBegin = path.rfind('/') + 1;
    return {path.substr(0, nameBegin), path.substr(nameBegin)};
}

/// Follows symbolic links until the path does not name one. The resulting file need not exist.
/// @return the path of the file; empty if the file must not be replaced or cannot be determined
std::string resolveLinks(std::string path)
{
    constexpr int MAX_LINKS = 40;
    for (int i = 0; i < MAX_LINKS; ++i) {
        std::array<char, 4096> buffer;
        const ssize_t count = readlink(path.c_str(), buffer.data(), buffer.size());
        if (count < 0) {
            return path;
        }
        const std::size_t size = static_cast<std::size_t>(count);
        if (size == 0 || size == buffer.size() || isKernelLink(path)) {
            break;
        }
        const bool isAbsolute = buffer.front() == '/';
        path = isAbsolute ? "" : splitPath(path).directory;
        path.append(buffer.data(), size);
    }
    return "";
}

/// A new file with a unique hidden name. The destructor deletes it, unless it was renamed.
class TemporaryFile
{
public:
    /// Creates the file; `errno` has the reason if that fails.
    TemporaryFile(int directory, mode_t mode) : m_Directory(directory), m_File(create(mode)) {}
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    ~TemporaryFile()
    {
        if (m_File.isOpen() && !m_IsRenamed) {
            unlinkat(m_Directory, m_Name.c_str(), 0);
        }
    }

    bool isOpen() const { return m_File.isOpen(); }
    int get() const { return m_File.get(); }

    /// Gives the file its final name and replaces the file that has it.
    bool rename(const std::string& name)
    {
        m_IsRenamed = renameat(m_Directory, m_Name.c_str(), m_Directory, name.c_str()) == 0;
        return m_IsRenamed;
    }

private:
    int create(mode_t mode)
    {
        constexpr int FLAGS = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW;
        constexpr int MAX_ATTEMPTS = 100;
        int descriptor = INVALID_DESCRIPTOR;
        for (int i = 0; i < MAX_ATTEMPTS && descriptor < 0; ++i) {
            m_Name = makeName();
            descriptor = openDescriptor(m_Directory, m_Name.c_str(), FLAGS, mode);
            if (descriptor < 0 && errno != EEXIST) {
                break;
            }
        }
        return descriptor;
    }

    /// Returns a name that is probably unique. The process id and the counter distinguish the
    /// processes and threads of one system, the time distinguishes systems that share the
    /// directory. O_EXCL detects remaining collisions.
    static std::string makeName()
    {
        static std::atomic<unsigned int> counter{0};
        timespec now = {};
        clock_gettime(CLOCK_REALTIME, &now);
        return ".qortk-" + std::to_string(getpid()) + "-" + std::to_string(now.tv_nsec) + "-" +
               std::to_string(counter++);
    }

    const int m_Directory;
    std::string m_Name;
    const FileDescriptor m_File;
    bool m_IsRenamed = false;
};

/// Gives a new file the owner, group and extended attributes of another one.
/// @return false if the system does not permit it
bool copyOwnerAndAttributes(int from, int to)
{
    struct stat source, current;
    if (fstat(from, &source) != 0 || fstat(to, &current) != 0) {
        return false;
    }
    const bool hasSameOwner = source.st_uid == current.st_uid && source.st_gid == current.st_gid;
    return (hasSameOwner || fchown(to, source.st_uid, source.st_gid) == 0) &&
           copyExtendedAttributes(from, to);
}

/// Gives a new file the permissions of another one. Call it after the content is written, because
/// writing can clear the set-user-ID bit.
/// @return false if the system does not permit it or stores other permissions
bool copyPermissions(int from, int to)
{
    constexpr mode_t PERMISSIONS = 07777;
    struct stat source, current;
    if (fstat(from, &source) != 0 || fstat(to, &current) != 0) {
        return false;
    }
    if (source.st_mode == current.st_mode) {
        return true;
    }
    return fchmod(to, source.st_mode & PERMISSIONS) == 0 && fstat(to, &current) == 0 &&
           source.st_mode == current.st_mode;
}

enum class Outcome {
    REPLACED,
    DISK_FAILED, ///< the original is unchanged
    IMPOSSIBLE,  ///< the original is unchanged and has to be written in place
};

/// Writes a new file beside the original one and renames it.
/// @param original the original, opened for writing; not open if it does not exist
Outcome replaceByRename(const std::string& path, const FileDescriptor& original, const char* bytes,
                        std::size_t size)
{
    constexpr mode_t PRIVATE_FILE_MODE = 0600;
    const TPathParts target = splitPath(resolveLinks(path));
    if (target.name.empty()) {
        return Outcome::IMPOSSIBLE;
    }
    const char* const directoryPath = target.directory.empty() ? "." : target.directory.c_str();
    const FileDescriptor directory(openDescriptor(AT_FDCWD, directoryPath, O_RDONLY | O_DIRECTORY));
    if (!directory.isOpen()) {
        return Outcome::IMPOSSIBLE;
    }
    const bool exists = original.isOpen();
    TemporaryFile file(directory.get(), exists ? PRIVATE_FILE_MODE : FILE_MODE);
    if (!file.isOpen()) {
        return exists && isDiskFailure(errno) ? Outcome::DISK_FAILED : Outcome::IMPOSSIBLE;
    }
    if (exists && !copyOwnerAndAttributes(original.get(), file.get())) {
        return Outcome::IMPOSSIBLE;
    }
    if (writeAll(file.get(), bytes, size) < size) {
        return Outcome::DISK_FAILED;
    }
    if (exists && !copyPermissions(original.get(), file.get())) {
        return Outcome::IMPOSSIBLE;
    }
    if (!flush(file.get())) {
        return Outcome::DISK_FAILED;
    }
    if (!file.rename(target.name)) {
        return isDiskFailure(errno) ? Outcome::DISK_FAILED : Outcome::IMPOSSIBLE;
    }
    // Without this, the old file may be back after a power cut.
    flush(directory.get());
    return Outcome::REPLACED;
}

/// Returns whether a file is a regular file without further hard links, which would still refer to
/// the old content after a replacement.
bool isReplaceable(const FileDescriptor& file)
{
    struct stat status;
    return fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink <= 1;
}

/// Writes to an open file. Truncates a regular file first.
/// @return false if the file cannot be truncated
bool writeInPlace(const FileDescriptor& file, const char* bytes, std::size_t size)
{
    if (isRegularFile(file.get()) && ftruncate(file.get(), 0) != 0) {
        return false;
    }
    setBlocking(file.get());
    writeAllWithoutSigpipe(file.get(), bytes, size);
    return true;
}

} // namespace

bool replaceFile(const std::string& path, const char* bytes, std::size_t size)
{
    if (!isValidPath(path)) {
        return false;
    }
    struct stat status;
    const bool isNew = stat(path.c_str(), &status) != 0 && errno == ENOENT;
    // O_CREAT makes the system apply its protection of files in shared directories.
    constexpr int FLAGS = O_WRONLY | O_CREAT;
    const FileDescriptor original(isNew ? INVALID_DESCRIPTOR
                                        : openNonBlocking(path.c_str(), FLAGS));
    if (!isNew && !original.isOpen()) {
        return false;
    }
    if ((isNew || isReplaceable(original)) &&
        replaceByRename(path, original, bytes, size) != Outcome::IMPOSSIBLE) {
        return true;
    }
    if (!isNew) {
        return writeInPlace(original, bytes, size);
    }
    const FileDescriptor created(openNonBlocking(path.c_str(), FLAGS));
    return created.isOpen() && writeInPlace(created, bytes, size);
}

} // namespace qor::platform

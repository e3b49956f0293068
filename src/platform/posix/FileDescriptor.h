// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

namespace qor::platform
{

constexpr int INVALID_DESCRIPTOR = -1;

/// Permissions of a new file, before the process's file mode creation mask is applied.
constexpr mode_t FILE_MODE = 0666;

/// Owns at most one file descriptor.
class FileDescriptor
{
public:
    /// Takes ownership of a descriptor. A negative number owns no descriptor.
    explicit FileDescriptor(int descriptor) noexcept : m_Descriptor(descriptor) {}
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    ~FileDescriptor()
    {
        if (isOpen()) {
            close(m_Descriptor);
        }
    }

    bool isOpen() const noexcept { return m_Descriptor >= 0; }
    int get() const noexcept { return m_Descriptor; }

    /// Returns the descriptor and gives up its ownership.
    int release() noexcept
    {
        const int descriptor = m_Descriptor;
        m_Descriptor = INVALID_DESCRIPTOR;
        return descriptor;
    }

private:
    int m_Descriptor;
};

/// Returns whether a path has no zero byte. The system reads a path only up to its first zero byte.
bool isValidPath(const std::string& path);

/// Opens a file with `openat`. The descriptor is at least 3, even if a standard stream is closed:
/// otherwise output for that stream would be written to the file. Child processes do not inherit
/// the descriptor.
/// @param directory descriptor that a relative path refers to; AT_FDCWD for the current directory
/// @return the descriptor; INVALID_DESCRIPTOR on failure, with the reason in `errno`
int openDescriptor(int directory, const char* path, int flags, mode_t mode = FILE_MODE);

/// Opens a file as `openDescriptor` does, relative to the current directory, without waiting for
/// the other end of a pipe or a serial line. The descriptor is in non-blocking mode. If another
/// process has a lease on a regular file, the function waits until the lease is released, and the
/// descriptor is in blocking mode.
int openNonBlocking(const char* path, int flags);

/// Returns whether a descriptor refers to a regular file.
bool isRegularFile(int descriptor);

/// Ends the non-blocking mode, so that reading and writing wait for the other end of a pipe.
void setBlocking(int descriptor);

/// Writes all bytes in as few calls as the system permits. Signals do not end it earlier. A pipe
/// without a reader raises SIGPIPE.
/// @return the number of bytes written; fewer than `size` on failure, with the reason in `errno`
std::size_t writeAll(int descriptor, const char* bytes, std::size_t size);

/// Writes as `writeAll` does, but a pipe without a reader only fails with EPIPE.
std::size_t writeAllWithoutSigpipe(int descriptor, const char* bytes, std::size_t size);

} // namespace qor::platform

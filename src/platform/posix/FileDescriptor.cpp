// SPDX-License-Identifier: MIT
#include "platform/posix/FileDescriptor.h"

#include <cerrno>

#include <fcntl.h>

#include "platform/posix/ScopedSigpipeBlock.h"

namespace qor::platform
{

namespace
{

/// Replaces a descriptor that belongs to a standard stream by a greater one.
int moveAboveStandardStreams(int descriptor)
{
    if (descriptor < 0 || descriptor > STDERR_FILENO) {
        return descriptor;
    }
    const int moved = fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    const int error = errno;
    close(descriptor);
    errno = error;
    return moved;
}

bool isRegularFile(const char* path)
{
    struct stat status;
    return stat(path, &status) == 0 && S_ISREG(status.st_mode);
}

} // namespace

bool isValidPath(const std::string& path)
{
    return path.find('\0') == std::string::npos;
}

int openDescriptor(int directory, const char* path, int flags, mode_t mode)
{
    int descriptor = INVALID_DESCRIPTOR;
    do {
        descriptor = openat(directory, path, flags | O_NOCTTY | O_CLOEXEC, mode);
    } while (descriptor < 0 && errno == EINTR);
    return moveAboveStandardStreams(descriptor);
}

int openNonBlocking(const char* path, int flags)
{
    const int descriptor = openDescriptor(AT_FDCWD, path, flags | O_NONBLOCK);
    // For a regular file, this error means that another process has a lease on it.
    if (descriptor < 0 && (errno == EAGAIN || errno == EWOULDBLOCK) && isRegularFile(path)) {
        return openDescriptor(AT_FDCWD, path, flags);
    }
    return descriptor;
}

bool isRegularFile(int descriptor)
{
    struct stat status;
    return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

void setBlocking(int descriptor)
{
    fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) & ~O_NONBLOCK);
}

std::size_t writeAll(int descriptor, const char* bytes, std::size_t size)
{
    std::size_t done = 0;
    while (done < size) {
        const ssize_t count = write(descriptor, bytes + done, size - done);
        if (count > 0) {
            done += static_cast<std::size_t>(count);
        } else if (count == 0 || errno != EINTR) {
            break;
        }
    }
    return done;
}

std::size_t writeAllWithoutSigpipe(int descriptor, const char* bytes, std::size_t size)
{
    ScopedSigpipeBlock block;
    const std::size_t done = writeAll(descriptor, bytes, size);
    if (done < size && errno == EPIPE) {
        block.discardSignal();
    }
    return done;
}

} // namespace qor::platform

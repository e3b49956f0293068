// SPDX-License-Identifier: MIT
#include "platform/Platform.h"

#include <cerrno>

#include <fcntl.h>

#include "platform/posix/FileDescriptor.h"

namespace qor::platform
{

namespace
{

/// State of an `OutputFile`. A write may raise SIGPIPE if the file is not a regular file.
enum OutputState { REGULAR_FILE, OTHER_FILE };

void closeIfOpen(std::intptr_t handle)
{
    if (handle != INVALID_DESCRIPTOR) {
        close(static_cast<int>(handle));
    }
}

} // namespace

PathKind getPathKind(const std::string& path)
{
    struct stat status;
    if (!isValidPath(path) || stat(path.c_str(), &status) != 0) {
        return PathKind::NONE;
    }
    return S_ISDIR(status.st_mode) ? PathKind::DIRECTORY : PathKind::FILE;
}

int createDirectory(const std::string& path, Access access)
{
    constexpr mode_t DIRECTORY_MODE = 0777;
    constexpr mode_t PRIVATE_DIRECTORY_MODE = 0700;
    if (!isValidPath(path)) {
        return EINVAL;
    }
    const mode_t mode = access == Access::USER_ONLY ? PRIVATE_DIRECTORY_MODE : DIRECTORY_MODE;
    return mkdir(path.c_str(), mode) == 0 ? 0 : errno;
}

InputFile::InputFile(const std::string& path, Kind kind) : m_Handle(INVALID_DESCRIPTOR)
{
    if (!isValidPath(path)) {
        m_Error = EINVAL;
        return;
    }
    const int descriptor = openNonBlocking(path.c_str(), O_RDONLY);
    if (descriptor < 0) {
        m_Error = errno;
        return;
    }
    m_Handle = descriptor;
    // open() accepts directories, too.
    struct stat status;
    if (fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode)) {
        m_Error = EISDIR;
    }
    if (kind != Kind::ATTRIBUTES) {
        setBlocking(descriptor);
    }
}

InputFile::~InputFile()
{
    closeIfOpen(m_Handle);
}

bool InputFile::isOpen() const
{
    return m_Handle != INVALID_DESCRIPTOR;
}

int InputFile::getWriteTime(std::int64_t& second) const
{
    struct stat status;
    if (fstat(static_cast<int>(m_Handle), &status) != 0) {
        return errno;
    }
    second = status.st_mtime;
    return 0;
}

int InputFile::getSize(std::uint64_t& size) const
{
    struct stat status;
    if (fstat(static_cast<int>(m_Handle), &status) != 0) {
        return errno;
    }
    size = static_cast<std::uint64_t>(status.st_size);
    return 0;
}

std::size_t InputFile::read(void* buffer, std::size_t size)
{
    char* const bytes = static_cast<char*>(buffer);
    std::size_t done = 0;
    while (done < size) {
        const ssize_t count = ::read(static_cast<int>(m_Handle), bytes + done, size - done);
        if (count > 0) {
            done += static_cast<std::size_t>(count);
        } else if (count == 0) {
            break;
        } else if (errno != EINTR) {
            m_Error = errno;
            break;
        }
    }
    return done;
}

OutputFile::OutputFile(const std::string& path, Kind kind) : m_Handle(INVALID_DESCRIPTOR)
{
    if (!isValidPath(path)) {
        return;
    }
    const int appendFlag = kind == Kind::BINARY ? 0 : O_APPEND;
    FileDescriptor file(openNonBlocking(path.c_str(), O_WRONLY | O_CREAT | appendFlag));
    if (!file.isOpen()) {
        return;
    }
    m_State = isRegularFile(file.get()) ? REGULAR_FILE : OTHER_FILE;
    // O_TRUNC is not used, because opening can fail after that flag has truncated the file.
    if (m_State == REGULAR_FILE && kind != Kind::APPEND_TEXT && ftruncate(file.get(), 0) != 0) {
        return;
    }
    setBlocking(file.get());
    m_Handle = file.release();
}

OutputFile::~OutputFile()
{
    closeIfOpen(m_Handle);
}

bool OutputFile::isOpen() const
{
    return m_Handle != INVALID_DESCRIPTOR;
}

std::size_t OutputFile::write(const char* bytes, std::size_t size)
{
    const int descriptor = static_cast<int>(m_Handle);
    return m_State == REGULAR_FILE ? writeAll(descriptor, bytes, size)
                                   : writeAllWithoutSigpipe(descriptor, bytes, size);
}

} // namespace qor::platform

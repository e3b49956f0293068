// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cstring>
#include <memory>

#include "platform/Platform.h"
#include "platform/windows/FileTime.h"
#include "platform/windows/SystemHeaders.h"

namespace qor::platform
{

namespace
{

/// Other programs may read, write, rename and delete the file while it is open.
constexpr DWORD SHARE_ALL = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// States of a file. A state that is not negative is a byte that a text `InputFile` has read ahead.
constexpr int BINARY_STATE = -2;
constexpr int TEXT_STATE = -1;

bool isPath(const std::string& path)
{
    return path.find('\0') == std::string::npos;
}

HANDLE toHandle(std::intptr_t handle)
{
    return reinterpret_cast<HANDLE>(handle);
}

std::intptr_t toNumber(HANDLE handle)
{
    return reinterpret_cast<std::intptr_t>(handle);
}

int getLastError()
{
    return static_cast<int>(GetLastError());
}

/// Limits a size to the range of the system's calls.
DWORD clampSize(std::size_t size)
{
    constexpr std::size_t MAX_SIZE = std::size_t{1} << 30;
    return static_cast<DWORD>(std::min(size, MAX_SIZE));
}

/// Reads until the buffer is full or the file ends.
/// @param error set on failure
std::size_t readBytes(HANDLE file, char* buffer, std::size_t size, int& error)
{
    std::size_t done = 0;
    while (done < size) {
        DWORD count = 0;
        if (!ReadFile(file, buffer + done, clampSize(size - done), &count, nullptr)) {
            const DWORD reason = GetLastError();
            // The writer has closed the pipe, or the device has ended.
            if (reason != ERROR_BROKEN_PIPE && reason != ERROR_HANDLE_EOF) {
                error = static_cast<int>(reason);
            }
            break;
        }
        if (count == 0) {
            break;
        }
        done += count;
    }
    return done;
}

/// Converts each CR LF to a line feed, in place. A CR at the end is kept.
/// @return the end of the result
char* joinLineEnds(char* begin, char* end)
{
    char* source =
        static_cast<char*>(std::memchr(begin, '\r', static_cast<std::size_t>(end - begin)));
    if (!source) {
        return end;
    }
    char* target = source;
    while (source != end) {
        if (*source == '\r' && source + 1 != end && source[1] == '\n') {
            ++source;
        }
        *target++ = *source++;
    }
    return target;
}

/// @return the number of bytes that the system accepted
std::size_t writeBytes(HANDLE file, const char* bytes, std::size_t size)
{
    std::size_t done = 0;
    while (done < size) {
        DWORD count = 0;
        if (!WriteFile(file, bytes + done, clampSize(size - done), &count, nullptr) || count == 0) {
            break;
        }
        done += count;
    }
    return done;
}

/// Writes bytes with CR LF for each line feed, in one call.
/// @return the number of bytes of `bytes` that were accepted as a whole
std::size_t writeText(HANDLE file, const char* bytes, std::size_t size)
{
    const auto lineFeeds = static_cast<std::size_t>(std::count(bytes, bytes + size, '\n'));
    std::array<char, 4096> stackBuffer;
    std::unique_ptr<char[]> heapBuffer;
    if (size + lineFeeds > stackBuffer.size()) {
        heapBuffer.reset(new char[size + lineFeeds]);
    }
    char* const text = heapBuffer ? heapBuffer.get() : stackBuffer.data();
    char* end = text;
    for (std::size_t i = 0; i < size; ++i) {
        if (bytes[i] == '\n') {
            *end++ = '\r';
        }
        *end++ = bytes[i];
    }
    std::size_t written = writeBytes(file, text, static_cast<std::size_t>(end - text));
    std::size_t accepted = 0;
    while (accepted < size) {
        const std::size_t needed = bytes[accepted] == '\n' ? 2 : 1;
        if (written < needed) {
            break;
        }
        written -= needed;
        ++accepted;
    }
    return accepted;
}

} // namespace

PathKind getPathKind(const std::string& path)
{
    const DWORD attributes =
        isPath(path) ? GetFileAttributesA(path.c_str()) : INVALID_FILE_ATTRIBUTES;
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return PathKind::NONE;
    }
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? PathKind::DIRECTORY : PathKind::FILE;
}

/// Permissions are inherited from the parent directory for both kinds of access: the directories of
/// a user's profile are not accessible to other users.
int createDirectory(const std::string& path, Access)
{
    if (!isPath(path)) {
        return ERROR_INVALID_NAME;
    }
    return CreateDirectoryA(path.c_str(), nullptr) ? 0 : getLastError();
}

InputFile::InputFile(const std::string& path, Kind kind)
    : m_Handle(toNumber(INVALID_HANDLE_VALUE)),
      m_State(kind == Kind::TEXT ? TEXT_STATE : BINARY_STATE)
{
    if (!isPath(path)) {
        m_Error = ERROR_INVALID_NAME;
        return;
    }
    const bool isRead = kind != Kind::ATTRIBUTES;
    const HANDLE handle =
        CreateFileA(path.c_str(), GENERIC_READ, isRead ? SHARE_ALL : 0, nullptr, OPEN_EXISTING,
                    FILE_ATTRIBUTE_NORMAL | (isRead ? FILE_FLAG_SEQUENTIAL_SCAN : 0), nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        m_Error = getLastError();
        return;
    }
    m_Handle = toNumber(handle);
}

InputFile::~InputFile()
{
    if (isOpen()) {
        CloseHandle(toHandle(m_Handle));
    }
}

bool InputFile::isOpen() const
{
    return toHandle(m_Handle) != INVALID_HANDLE_VALUE;
}

std::size_t InputFile::read(void* buffer, std::size_t size)
{
    char* const bytes = static_cast<char*>(buffer);
    const HANDLE file = toHandle(m_Handle);
    if (m_State == BINARY_STATE || size == 0) {
        return readBytes(file, bytes, size, m_Error);
    }
    char* const end = bytes + size;
    char* begin = bytes; // of the bytes that are not converted yet
    while (begin != end) {
        char* next = begin;
        if (m_State >= 0) {
            *next++ = static_cast<char>(m_State);
            m_State = TEXT_STATE;
        }
        const auto room = static_cast<std::size_t>(end - next);
        const std::size_t count = readBytes(file, next, room, m_Error);
        char* const converted = joinLineEnds(begin, next + count);
        if (count < room) {
            return static_cast<std::size_t>(converted - bytes);
        }
        // A line feed may follow a carriage return at the end of the block.
        begin = converted;
        if (begin[-1] == '\r') {
            char ahead = 0;
            if (readBytes(file, &ahead, 1, m_Error) == 0) {
                return static_cast<std::size_t>(begin - bytes);
            }
            if (ahead == '\n') {
                begin[-1] = '\n';
            } else {
                m_State = static_cast<unsigned char>(ahead);
            }
        }
    }
    return size;
}

int InputFile::getWriteTime(std::int64_t& second) const
{
    FILETIME time = {};
    if (!GetFileTime(toHandle(m_Handle), nullptr, nullptr, &time)) {
        return getLastError();
    }
    const std::int64_t count = sinceStartOf1970(time);
    second = count / FILE_TIMES_PER_SECOND - (count % FILE_TIMES_PER_SECOND < 0 ? 1 : 0);
    return 0;
}

int InputFile::getSize(std::uint64_t& size) const
{
    LARGE_INTEGER number = {};
    if (!GetFileSizeEx(toHandle(m_Handle), &number)) {
        return getLastError();
    }
    size = static_cast<std::uint64_t>(number.QuadPart);
    return 0;
}

OutputFile::OutputFile(const std::string& path, Kind kind)
    : m_Handle(toNumber(INVALID_HANDLE_VALUE)),
      m_State(kind == Kind::BINARY ? BINARY_STATE : TEXT_STATE)
{
    if (!isPath(path)) {
        return;
    }
    // With the right to append alone, the system writes each block at the file's current end.
    const DWORD access = kind == Kind::BINARY ? GENERIC_WRITE : FILE_APPEND_DATA | SYNCHRONIZE;
    const DWORD creation = kind == Kind::APPEND_TEXT ? OPEN_ALWAYS : CREATE_ALWAYS;
    m_Handle = toNumber(CreateFileA(path.c_str(), access, SHARE_ALL, nullptr, creation,
                                    FILE_ATTRIBUTE_NORMAL, nullptr));
}

OutputFile::~OutputFile()
{
    if (isOpen()) {
        CloseHandle(toHandle(m_Handle));
    }
}

bool OutputFile::isOpen() const
{
    return toHandle(m_Handle) != INVALID_HANDLE_VALUE;
}

std::size_t OutputFile::write(const char* bytes, std::size_t size)
{
    const HANDLE file = toHandle(m_Handle);
    return m_State == TEXT_STATE ? writeText(file, bytes, size) : writeBytes(file, bytes, size);
}

} // namespace qor::platform

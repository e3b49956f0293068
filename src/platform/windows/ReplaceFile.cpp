// SPDX-License-Identifier: MIT
#include <atomic>
#include <string>

#include "platform/Platform.h"
#include "platform/windows/SystemHeaders.h"

namespace qor::platform
{

namespace
{

class ScopedHandle
{
public:
    explicit ScopedHandle(HANDLE handle) : m_Handle(handle) {}
    ScopedHandle(const ScopedHandle&) = delete;
    ScopedHandle& operator=(const ScopedHandle&) = delete;
    ~ScopedHandle()
    {
        if (isOpen()) {
            CloseHandle(m_Handle);
        }
    }

    bool isOpen() const { return m_Handle != INVALID_HANDLE_VALUE; }
    HANDLE get() const { return m_Handle; }

private:
    const HANDLE m_Handle;
};

enum class Target { MISSING, REPLACEABLE, IN_PLACE, NOT_WRITABLE };

/// Examines the file to replace. Links and files with several names are written in place, because
/// a new file would separate them. Devices and pipes have no content to replace.
Target examineTarget(const std::string& path)
{
    const ScopedHandle file(CreateFileA(path.c_str(), GENERIC_WRITE,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                        nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file.isOpen()) {
        return GetLastError() == ERROR_FILE_NOT_FOUND ? Target::MISSING : Target::NOT_WRITABLE;
    }
    BY_HANDLE_FILE_INFORMATION information = {};
    const DWORD attributes = GetFileAttributesA(path.c_str());
    const bool isPlainFile =
        GetFileType(file.get()) == FILE_TYPE_DISK &&
        GetFileInformationByHandle(file.get(), &information) && information.nNumberOfLinks == 1 &&
        attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0;
    return isPlainFile ? Target::REPLACEABLE : Target::IN_PLACE;
}

std::string makeTemporaryName(const std::string& path)
{
    static std::atomic<unsigned int> counter = 0;
    return path + "." + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(++counter) +
           ".tmp";
}

/// @return whether the system has stored all bytes on the disk
bool writeAll(HANDLE file, const char* bytes, std::size_t size)
{
    constexpr std::size_t MAX_BLOCK_SIZE = std::size_t{1} << 30;
    while (size > 0) {
        const auto block = static_cast<DWORD>(size < MAX_BLOCK_SIZE ? size : MAX_BLOCK_SIZE);
        DWORD count = 0;
        if (!WriteFile(file, bytes, block, &count, nullptr) || count == 0) {
            return false;
        }
        bytes += count;
        size -= count;
    }
    return FlushFileBuffers(file) != FALSE;
}

enum class Outcome { REPLACED, NOT_WRITTEN, NOT_REPLACED };

/// Writes a new file in the target's directory and renames it to the target.
Outcome replaceWhole(const std::string& path, bool exists, const char* bytes, std::size_t size)
{
    const std::string temporary = makeTemporaryName(path);
    bool isWritten = false;
    {
        const ScopedHandle file(CreateFileA(temporary.c_str(), GENERIC_WRITE, 0, nullptr,
                                            CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
        if (!file.isOpen()) {
            return Outcome::NOT_REPLACED;
        }
        isWritten = writeAll(file.get(), bytes, size);
    }
    if (!isWritten) {
        DeleteFileA(temporary.c_str());
        return Outcome::NOT_WRITTEN;
    }
    // ReplaceFile keeps the attributes, the permissions and the creation time of the old file.
    const BOOL isReplaced =
        exists ? ReplaceFileA(path.c_str(), temporary.c_str(), nullptr, 0, nullptr, nullptr)
               : MoveFileExA(temporary.c_str(), path.c_str(), MOVEFILE_WRITE_THROUGH);
    if (!isReplaced) {
        DeleteFileA(temporary.c_str());
    }
    return isReplaced ? Outcome::REPLACED : Outcome::NOT_REPLACED;
}

} // namespace

bool replaceFile(const std::string& path, const char* bytes, std::size_t size)
{
    const bool isPath = path.find('\0') == std::string::npos;
    const Target target = isPath ? examineTarget(path) : Target::NOT_WRITABLE;
    if (target == Target::NOT_WRITABLE) {
        return false;
    }
    if (target != Target::IN_PLACE &&
        replaceWhole(path, target == Target::REPLACEABLE, bytes, size) != Outcome::NOT_REPLACED) {
        return true;
    }
    OutputFile file(path, OutputFile::Kind::BINARY);
    file.write(bytes, file.isOpen() ? size : 0);
    return file.isOpen();
}

} // namespace qor::platform

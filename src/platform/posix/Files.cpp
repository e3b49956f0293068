#include "platform/Platform.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <optional>
#include <vector>

#include <fcntl.h>
#include <pthread.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace qor::platform
{

namespace
{

constexpr std::intptr_t NO_HANDLE = -1;

/// State of an `OutputFile` that is not a regular file.
constexpr int PIPE_STATE = 1;

bool isPath(const std::string& path)
{
    return path.find('\0') == std::string::npos;
}

/// Opens a file without waiting for whoever is at the other end of a pipe or a line.
int openAtOnce(const char* path, int flags)
{
    constexpr mode_t USUAL_PERMISSIONS = 0666;
    for (;;) {
        const int handle = open(path, flags | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, USUAL_PERMISSIONS);
        if (handle >= 0 || errno != EINTR) {
            return handle;
        }
    }
}

/// From here on the other end is waited for, so that no bytes are dropped.
void letWait(int handle)
{
    fcntl(handle, F_SETFL, fcntl(handle, F_GETFL) & ~O_NONBLOCK);
}

/// Keeps a broken pipe from ending the process, for as long as it lives and in this thread.
class PipeSignalPause
{
public:
    PipeSignalPause()
    {
        sigemptyset(&m_PipeSignal);
        sigaddset(&m_PipeSignal, SIGPIPE);
        m_WasPending = isPending();
        pthread_sigmask(SIG_BLOCK, &m_PipeSignal, &m_Former);
    }
    PipeSignalPause(const PipeSignalPause&) = delete;
    PipeSignalPause& operator=(const PipeSignalPause&) = delete;

    ~PipeSignalPause()
    {
        int number = 0;
        if (!m_WasPending && isPending()) {
            sigwait(&m_PipeSignal, &number);
        }
        pthread_sigmask(SIG_SETMASK, &m_Former, nullptr);
    }

private:
    static bool isPending()
    {
        sigset_t pending;
        sigpending(&pending);
        return sigismember(&pending, SIGPIPE) == 1;
    }

    sigset_t m_PipeSignal;
    sigset_t m_Former;
    bool m_WasPending;
};

void closeIfOpen(std::intptr_t handle)
{
    if (handle != NO_HANDLE) {
        close(static_cast<int>(handle));
    }
}

std::string getVariable(const char* name)
{
    const char* const value = getEnvironmentVariable(name);
    return value ? value : "";
}

/// @return the home directory that the password database tells; empty if it tells none
std::string getRegisteredHome()
{
    constexpr std::size_t GREATEST_SIZE = std::size_t{1} << 20;
    std::vector<char> buffer(1024);
    passwd user = {};
    passwd* found = nullptr;
    while (getpwuid_r(getuid(), &user, buffer.data(), buffer.size(), &found) == ERANGE &&
           buffer.size() < GREATEST_SIZE) {
        buffer.resize(buffer.size() * 2);
    }
    return found && user.pw_dir ? user.pw_dir : "";
}

} // namespace

PathKind getPathKind(const std::string& path)
{
    struct stat status;
    if (!isPath(path) || stat(path.c_str(), &status) != 0) {
        return PathKind::NONE;
    }
    return S_ISDIR(status.st_mode) ? PathKind::DIRECTORY : PathKind::FILE;
}

int createDirectory(const std::string& path, Access access)
{
    constexpr mode_t DIRECTORY_MODE = 0777;
    constexpr mode_t PRIVATE_DIRECTORY_MODE = 0700;
    if (!isPath(path)) {
        return EINVAL;
    }
    const mode_t mode = access == Access::USER_ONLY ? PRIVATE_DIRECTORY_MODE : DIRECTORY_MODE;
    return mkdir(path.c_str(), mode) == 0 ? 0 : errno;
}

InputFile::InputFile(const std::string& path, Kind kind) : m_Handle(NO_HANDLE)
{
    if (!isPath(path)) {
        m_Error = EINVAL;
        return;
    }
    const int handle = openAtOnce(path.c_str(), O_RDONLY);
    if (handle < 0) {
        m_Error = errno;
        return;
    }
    m_Handle = handle;
    // open() accepts directories, too.
    struct stat status;
    if (fstat(handle, &status) == 0 && S_ISDIR(status.st_mode)) {
        m_Error = EISDIR;
    }
    if (kind != Kind::ATTRIBUTES) {
        letWait(handle);
    }
}

InputFile::~InputFile()
{
    closeIfOpen(m_Handle);
}

bool InputFile::isOpen() const
{
    return m_Handle != NO_HANDLE;
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

OutputFile::OutputFile(const std::string& path, Kind kind) : m_Handle(NO_HANDLE)
{
    if (!isPath(path)) {
        return;
    }
    const int handle =
        openAtOnce(path.c_str(), O_WRONLY | O_CREAT | (kind == Kind::APPEND_TEXT ? 0 : O_TRUNC) |
                                     (kind == Kind::BINARY ? 0 : O_APPEND));
    if (handle < 0) {
        return;
    }
    m_Handle = handle;
    letWait(handle);
    struct stat status;
    m_State = fstat(handle, &status) == 0 && !S_ISREG(status.st_mode) ? PIPE_STATE : 0;
}

OutputFile::~OutputFile()
{
    closeIfOpen(m_Handle);
}

bool OutputFile::isOpen() const
{
    return m_Handle != NO_HANDLE;
}

std::size_t OutputFile::write(const char* bytes, std::size_t size)
{
    const std::optional<PipeSignalPause> pause =
        m_State == PIPE_STATE ? std::make_optional<PipeSignalPause>() : std::nullopt;
    std::size_t done = 0;
    while (done < size) {
        const ssize_t count = ::write(static_cast<int>(m_Handle), bytes + done, size - done);
        if (count > 0) {
            done += static_cast<std::size_t>(count);
        } else if (count == 0 || errno != EINTR) {
            break;
        }
    }
    return done;
}

bool replaceFile(const std::string& path, const char* bytes, std::size_t size)
{
    OutputFile file(path, OutputFile::Kind::BINARY);
    file.write(bytes, file.isOpen() ? size : 0);
    return file.isOpen();
}

const char* getEnvironmentVariable(const char* name)
{
    return std::getenv(name);
}

std::string getUserDataDirectory()
{
    std::string dataHome = getVariable("XDG_DATA_HOME");
    if (!dataHome.empty() && dataHome.front() == '/') {
        return dataHome;
    }
    std::string home = getVariable("HOME");
    if (home.empty()) {
        home = getRegisteredHome();
    }
    return home.empty() ? home : home + "/.local/share";
}

} // namespace qor::platform

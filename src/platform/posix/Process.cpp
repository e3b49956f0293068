// SPDX-License-Identifier: MIT
#include "platform/posix/Process.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/Platform.h"

namespace qor::platform
{

namespace
{

/// Exit status of a child process that could not execute the program, as in the shell.
constexpr int NOT_STARTED = 127;

/// Returns the value of PATH; the system's default path if PATH is not set or the host is a
/// set-user-ID or set-group-ID program.
std::string getSearchPath()
{
    if (const char* const variable = getEnvironmentVariable("PATH")) {
        return variable;
    }
    std::string path(confstr(_CS_PATH, nullptr, 0), '\0');
    confstr(_CS_PATH, path.data(), path.size());
    path.pop_back(); // the terminating zero
    return path;
}

bool isExecutable(const std::string& file)
{
    struct stat status;
    return stat(file.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           access(file.c_str(), X_OK) == 0;
}

/// Returns the path of a program; empty if no directory of the search path contains the program.
std::string findProgram(const std::string& name)
{
    const std::string path = getSearchPath();
    for (std::size_t begin = 0; begin <= path.size();) {
        const std::size_t end = std::min(path.find(':', begin), path.size());
        std::string file = path.substr(begin, end - begin) + "/" + name;
        if (path[begin] == '/' && isExecutable(file)) {
            return file;
        }
        begin = end + 1;
    }
    return "";
}

void resetSignals()
{
    // No system has more signals. `sigaction` rejects the numbers that do not exist.
    constexpr int MAX_SIGNAL = 128;
    struct sigaction standard = {};
    standard.sa_handler = SIG_DFL;
    for (int number = 1; number <= MAX_SIGNAL; ++number) {
        sigaction(number, &standard, nullptr);
    }
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

/// Closes all descriptors above the standard streams.
void closeDescriptors()
{
#ifdef QORTK_HAS_CLOSEFROM
    closefrom(STDERR_FILENO + 1);
#else
    constexpr long MAX_COUNT = 65536;
    const long limit = sysconf(_SC_OPEN_MAX);
    const long count = limit < 0 ? MAX_COUNT : std::min(limit, MAX_COUNT);
    for (int descriptor = STDERR_FILENO + 1; descriptor < count; ++descriptor) {
        close(descriptor);
    }
#endif
}

/// Connects the standard streams to /dev/null. Needs a free descriptor.
void disconnectStandardStreams()
{
    const int nullDevice = open("/dev/null", O_RDWR);
    for (int descriptor = 0; descriptor <= STDERR_FILENO; ++descriptor) {
        if (dup2(nullDevice, descriptor) < 0) {
            close(descriptor);
        }
    }
    if (nullDevice > STDERR_FILENO) {
        close(nullDevice);
    }
}

/// Permanently drops the privileges of a set-user-ID or set-group-ID host, because the program acts
/// for the user who started the host. If the real user is the superuser, keeps the effective user
/// instead, which such a host may have changed to another user. Setting the real and the effective
/// ID also sets the saved ID.
/// @return false if the system does not permit it
bool dropPrivileges()
{
    const uid_t user = getuid() != 0 ? getuid() : geteuid();
    const gid_t group = getuid() != 0 ? getgid() : getegid();
    return setregid(group, group) == 0 && setreuid(user, user) == 0;
}

/// Forks with all signals blocked, so that no signal handler of the host runs in the child process.
/// The signals remain blocked in the child process.
pid_t forkWithSignalsBlocked()
{
    sigset_t all;
    sigset_t formerMask;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &formerMask);
    const pid_t process = fork();
    if (process != 0) {
        pthread_sigmask(SIG_SETMASK, &formerMask, nullptr);
    }
    return process;
}

int waitForProcess(pid_t process)
{
    int status = 0;
    while (waitpid(process, &status, 0) < 0) {
        if (errno != EINTR) {
            return STATUS_UNKNOWN;
        }
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : STATUS_FAILED;
}

} // namespace

Program::Program(std::vector<std::string> arguments)
    : m_Arguments(std::move(arguments)), m_File(findProgram(m_Arguments.front()))
{
    for (std::string& argument : m_Arguments) {
        m_Pointers.push_back(argument.data());
    }
    m_Pointers.push_back(nullptr);
}

void Program::execute() const
{
    // Descriptors are closed first: opening /dev/null needs a free one.
    closeDescriptors();
    disconnectStandardStreams();
    if (dropPrivileges()) {
        resetSignals();
        execv(m_File.c_str(), m_Pointers.data());
    }
    _exit(NOT_STARTED);
}

int runAndWait(const Program& program)
{
    const pid_t process = forkWithSignalsBlocked();
    if (process == 0) {
        program.execute();
    }
    return process < 0 ? STATUS_FAILED : waitForProcess(process);
}

void spawnDetached(const Program& program)
{
    const pid_t process = forkWithSignalsBlocked();
    if (process == 0) {
        // The host's terminal may close before the program ends.
        setsid();
        if (fork() == 0) {
            program.execute();
        }
        _exit(EXIT_SUCCESS);
    }
    if (process > 0) {
        waitForProcess(process);
    }
}

} // namespace qor::platform

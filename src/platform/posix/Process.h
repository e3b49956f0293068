// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace qor::platform
{

/// A program with its arguments. The constructor does everything that needs memory, because a
/// child process of a host with several threads may only call async-signal-safe functions.
class Program
{
public:
    /// Searches the directories of PATH for the program. Relative directories are skipped, because
    /// programs in them are not trusted.
    /// @param arguments the program's file name, then its arguments
    explicit Program(std::vector<std::string> arguments);
    Program(Program&&) = default;
    Program& operator=(Program&&) = default;

    /// Returns whether an executable file was found.
    bool exists() const { return !m_File.empty(); }

    /// Replaces the calling child process by the program. The program starts with the default
    /// signal handlers and without the privileges of a set-user-ID host. Its only open files are
    /// the standard streams, which are connected to /dev/null.
    [[noreturn]] void execute() const;

private:
    std::vector<std::string> m_Arguments;
    std::string m_File;
    std::vector<char*> m_Pointers; ///< to m_Arguments, with the null pointer that `execv` needs
};

/// Results of `runAndWait` if the exit status of the program is not available.
/// @{
constexpr int STATUS_FAILED = -1;  ///< the program was not started, or a signal terminated it
constexpr int STATUS_UNKNOWN = -2; ///< the host ignores or collects exit statuses
/// @}

/// Runs a program and waits until it has ended.
/// @return the exit status of the program, STATUS_FAILED or STATUS_UNKNOWN
int runAndWait(const Program& program);

/// Starts a program in a new session and does not wait for it. The host need not call `wait`,
/// because the program is not its child process.
void spawnDetached(const Program& program);

} // namespace qor::platform

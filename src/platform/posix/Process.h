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
    /// Looks for the program in the directories of PATH, except in those that are relative to the
    /// current directory: programs there are not trusted.
    /// @param arguments the program's file name, then its arguments
    explicit Program(std::vector<std::string> arguments);
    Program(Program&&) = default;
    Program& operator=(Program&&) = default;

    /// Returns whether an executable file was found.
    bool exists() const { return !m_File.empty(); }

    /// Replaces the calling child process by the program. The program gets the default signal
    /// handlers, no open file except the standard streams, which are connected to /dev/null, and
    /// none of the privileges of a set-user-ID host.
    [[noreturn]] void execute() const;

private:
    std::vector<std::string> m_Arguments;
    std::string m_File;
    std::vector<char*> m_Pointers; ///< to m_Arguments, with the null pointer that `execv` needs
};

/// Exit statuses of `runAndWait` for a program without an exit status of its own.
/// @{
constexpr int STATUS_FAILED = -1;  ///< it could not be started, or a signal ended it
constexpr int STATUS_UNKNOWN = -2; ///< it ran, but the host ignores or collects exit statuses
/// @}

/// Runs a program and waits until it has ended.
/// @return its exit status; STATUS_FAILED or STATUS_UNKNOWN without one
int runAndWait(const Program& program);

/// Starts a program in a session of its own and does not wait for it. It is not a child process of
/// the host, which thus needs no `wait` for it.
void spawnDetached(const Program& program);

} // namespace qor::platform

// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "qor/Export.h"

namespace qor
{

/// Base class of the commands that a host registers with a Console.
///
/// **Ownership**: the host owns its commands. A command must exist while it is registered.
///
/// **Error handling**: a command prints its own errors. An exception passes through
/// Console::putChar() to the host.
///
/// **Thread safety**: commands run on the thread that calls Console::putChar().
///
/// @code
/// class Echo : public qor::ConsoleCommand
/// {
/// public:
///     explicit Echo(qor::Console& console) : m_Console(console) {}
///
///     bool execute(const std::vector<std::string>& tokens) override
///     {
///         m_Console.print(tokens[1]);
///         return true;
///     }
///
/// private:
///     qor::Console& m_Console;
/// };
///
/// qor::Console console(500);
/// Echo echo(console);
/// console.addCommand("echo", "prints its parameter", 1, 1, &echo);
/// @endcode
class QORTK_API ConsoleCommand
{
public:
    /// Runs the command, inside the call of Console::putChar() that entered the line.
    /// @param tokens the name of the command, then its parameters. The number of parameters is
    ///        within the limits given to Console::addCommand().
    /// @return whether the command succeeded. The console ignores it.
    virtual bool execute(const std::vector<std::string>& tokens) = 0;

    /// Virtual, so a `std::unique_ptr<ConsoleCommand>` may own an object of a derived class. Does
    /// not remove the command from a console.
    virtual ~ConsoleCommand();
};

} // namespace qor

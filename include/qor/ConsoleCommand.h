#pragma once

#include <string>
#include <vector>

#include "qor/Export.h"

namespace qor
{

/// Base class of the commands that a host registers with a Console.
///
/// The host owns its commands and keeps each alive while it is registered. Commands run on the
/// thread that calls Console::putChar().
///
/// @code
/// class Quit : public qor::ConsoleCommand
/// {
/// public:
///     bool execute(const std::vector<std::string>& tokens) override
///     {
///         m_ExitCode = tokens.size() > 1 ? 1 : 0;
///         return true;
///     }
///
/// private:
///     int m_ExitCode = 0;
/// };
/// @endcode
class QORTK_API ConsoleCommand
{
public:
    /// Runs the command, inside the call of Console::putChar() that entered the line.
    /// @param tokens the name of the command as typed, then its parameters, in the number that the
    ///        command was registered for
    /// @return whether the command succeeded. The console does not use it: a command prints its own
    ///         errors.
    virtual bool execute(const std::vector<std::string>& tokens) = 0;

    virtual ~ConsoleCommand();
};

} // namespace qor

#pragma once

#include <string>
#include <vector>

#include "qor/Export.h"

namespace qor
{

/// What a host derives from to give a Console a command. The host owns its commands and keeps each
/// alive while it is registered.
class QORTK_API ConsoleCommand
{
public:
    /// Runs the command, on the stack of the Console::putChar call that entered the line.
    /// @param tokens the words of the line: the command's name as typed, then its parameters, as
    ///        many as the command was registered for
    /// @return whether the command succeeded. The console itself makes no use of it.
    virtual bool execute(const std::vector<std::string>& tokens) = 0;

    virtual ~ConsoleCommand();
};

} // namespace qor

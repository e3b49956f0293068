// SPDX-License-Identifier: MIT
#include "Command.h"

#include <new>
#include <utility>

#include "Host.h"

Command::Command(Host& host, TDescription description)
    : m_Host(host), m_Description(std::move(description))
{
}

bool Command::execute(const std::vector<std::string>& tokens)
{
    bool succeeded = false;
    try {
        succeeded = run(tokens);
    } catch (const std::bad_alloc&) {
        // The memory of the failed command is free again, so the session continues.
        succeeded = fail("Out of memory");
    }
    m_Host.setCommandResult(succeeded);
    return succeeded;
}

std::string Command::joinWords(const std::vector<std::string>& tokens, std::size_t first)
{
    std::string text;
    for (std::size_t i = first; i < tokens.size(); ++i) {
        text += i == first ? tokens[i] : " " + tokens[i];
    }
    return text;
}

void Command::print(const std::string& line)
{
    m_Host.getConsole().print(line);
}

bool Command::fail(const std::string& reason)
{
    return m_Host.fail(reason);
}

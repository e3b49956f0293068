// SPDX-License-Identifier: MIT
#include "shared/Command.h"

#include <new>
#include <utility>

#include "shared/Session.h"

Command::Command(Session& session, TDescription description)
    : m_Session(session), m_Description(std::move(description))
{
}

bool Command::execute(const TTokens& tokens)
{
    bool succeeded = false;
    try {
        succeeded = run(tokens);
    } catch (const std::bad_alloc&) {
        // The memory of the failed command is free again, so the session continues.
        succeeded = fail("Out of memory");
    }
    m_Session.setCommandResult(succeeded);
    return succeeded;
}

std::string Command::joinWords(const TTokens& tokens, std::size_t first)
{
    std::string text;
    for (std::size_t i = first; i < tokens.size(); ++i) {
        text += i == first ? tokens[i] : " " + tokens[i];
    }
    return text;
}

void Command::print(const std::string& line)
{
    m_Session.getConsole().print(line);
}

bool Command::fail(const std::string& reason)
{
    return m_Session.fail(reason);
}

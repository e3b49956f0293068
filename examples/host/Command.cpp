#include "Command.h"

#include <new>
#include <utility>

#include "Host.h"

Command::Command(Host& host, TDescription description)
    : m_Host(host), m_Description(std::move(description))
{
}

const Command::TDescription& Command::getDescription() const
{
    return m_Description;
}

bool Command::execute(const std::vector<std::string>& tokens)
{
    bool succeeded = false;
    try {
        succeeded = run(tokens);
    } catch (const std::bad_alloc&) {
        // What the command was building is freed by now, so that the session can go on.
        succeeded = fail("Out of memory");
    }
    m_Host.noteResult(succeeded);
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

// SPDX-License-Identifier: MIT
#include "qor/Console.h"

#include <algorithm>
#include <utility>

namespace qor
{

namespace
{

constexpr char ENTER = 13;
constexpr char DELETE_LAST = 10;
constexpr char FIRST_PRINTABLE = 32;

bool isDelimiter(char character)
{
    return character == ' ' || character == '\t';
}

/// Splits a command line into its tokens and drops empty ones.
/// @return false if a quotation is not terminated
bool tokenize(const std::string& line, std::vector<std::string>& tokens)
{
    constexpr std::size_t TYPICAL_TOKEN_COUNT = 4;
    tokens.reserve(TYPICAL_TOKEN_COUNT);
    const char* position = line.data();
    const char* const lineEnd = position + line.size();
    for (;;) {
        position = std::find_if_not(position, lineEnd, isDelimiter);
        if (position == lineEnd) {
            return true;
        }
        const bool quoted = *position == '"';
        const char* const begin = quoted ? position + 1 : position;
        const char* const end =
            quoted ? std::find(begin, lineEnd, '"') : std::find_if(begin, lineEnd, isDelimiter);
        if (quoted && end == lineEnd) {
            return false;
        }
        if (end != begin) {
            tokens.emplace_back(begin, end);
        }
        position = quoted ? end + 1 : end;
    }
}

/// Returns the names and descriptions of a table's entries.
template<typename TTable>
std::vector<Console::TDescription> describe(const TTable& table)
{
    std::vector<Console::TDescription> descriptions;
    descriptions.reserve(table.size());
    for (const auto& [name, entry] : table) {
        descriptions.push_back({name, entry.help});
    }
    return descriptions;
}

} // namespace

Console::Console(int maxOutputLines)
    : m_MaxOutputLines(maxOutputLines), m_OutputModCount(0), m_CommandLineModCount(0),
      m_OldestOutput(0)
{
    addCommand("set", "Set value of console variable (set <variable> <value>)", 2, 2, this);
    addCommand("get", "Get value of console variable (get <variable>)", 1, 1, this);
}

Console::Console(const Console& other) = default;

Console& Console::operator=(const Console& other)
{
    Console(other).swap(*this);
    return *this;
}

inline void Console::swap(Console& other) noexcept
{
    std::swap(m_CommandLine, other.m_CommandLine);
    std::swap(m_Output, other.m_Output);
    std::swap(m_MaxOutputLines, other.m_MaxOutputLines);
    std::swap(m_Variables, other.m_Variables);
    std::swap(m_Commands, other.m_Commands);
    std::swap(m_OutputModCount, other.m_OutputModCount);
    std::swap(m_CommandLineModCount, other.m_CommandLineModCount);
    std::swap(m_OldestOutput, other.m_OldestOutput);
}

Console::~Console() = default;

void Console::addCommand(const std::string& name, const std::string& help, int minParameters,
                         int maxParameters, ConsoleCommand* command)
{
    if (command) {
        m_Commands.emplace(name, TCommand{name, help, minParameters, maxParameters, command});
    }
}

void Console::removeCommand(const std::string& name)
{
    m_Commands.erase(name);
}

void Console::addVariable(const std::string& name, const std::string& help, VariableType type,
                          float firstFloat, float secondFloat, void* storage)
{
    m_Variables.emplace(name, TVariable{name, help, type, firstFloat, secondFloat, storage});
}

void Console::removeVariable(const std::string& name)
{
    m_Variables.erase(name);
}

std::vector<Console::TDescription> Console::getCommands() const
{
    return describe(m_Commands);
}

std::vector<Console::TDescription> Console::getVariables() const
{
    return describe(m_Variables);
}

bool Console::putChar(char character)
{
    // Bytes above 127 become negative on every system, also where char is unsigned, and are
    // ignored.
    const int code = static_cast<signed char>(character);
    if (code >= FIRST_PRINTABLE) {
        m_CommandLine += character;
        ++m_CommandLineModCount;
        return true;
    }
    if (m_CommandLine.empty()) {
        return true;
    }
    if (code == DELETE_LAST) {
        m_CommandLine.pop_back();
        ++m_CommandLineModCount;
    } else if (code == ENTER) {
        print(m_CommandLine);
        parseAndExecute(m_CommandLine);
        m_CommandLine.clear();
        ++m_CommandLineModCount;
    }
    return true;
}

std::string Console::getCommandLine() const
{
    return m_CommandLine;
}

unsigned int Console::getCommandLineModCount() const noexcept
{
    return m_CommandLineModCount;
}

void Console::print(const std::string& line)
{
    // A negative maximum becomes an unsigned number that is never reached.
    if (m_Output.size() < static_cast<unsigned int>(m_MaxOutputLines)) {
        m_Output.push_back(line);
    } else if (!m_Output.empty()) {
        // The full output is a ring buffer: the new line replaces the oldest one.
        std::string& oldest = m_Output[m_OldestOutput];
        if (oldest.capacity() > 2 * line.size()) {
            std::string(line).swap(oldest); // assigning would keep the buffer of the dropped line
        } else {
            oldest = line;
        }
        m_OldestOutput = (m_OldestOutput + 1) % m_Output.size();
    }
    ++m_OutputModCount;
}

void Console::getOutput(std::vector<std::string>& lines, int lineCount, int skipCount) const
{
    lines.clear();
    const std::size_t skipped = static_cast<unsigned int>(skipCount);
    if (skipped >= m_Output.size() || lineCount <= 0) {
        return;
    }
    const std::size_t available = m_Output.size() - skipped;
    const std::size_t count = std::min(available, static_cast<std::size_t>(lineCount));
    lines.reserve(count);
    for (std::size_t position = available; position > available - count; --position) {
        lines.push_back(m_Output[(m_OldestOutput + position - 1) % m_Output.size()]);
    }
}

int Console::getOutputLenght() const noexcept
{
    return static_cast<int>(m_Output.size());
}

unsigned int Console::getOutputModCount() const noexcept
{
    return m_OutputModCount;
}

bool Console::execute(const std::vector<std::string>& tokens)
{
    // parseAndExecute() has checked the number of tokens against the limits of "set" and "get".
    const auto found = m_Variables.find(tokens[1]);
    if (found == m_Variables.end()) {
        return fail("Error: Variable not found");
    }
    const TVariable& variable = found->second;
    if (variable.type != VT_STRING || !variable.storage) {
        return fail("Error: Unexpected variable type");
    }
    std::string& value = *static_cast<std::string*>(variable.storage);
    if (tokens[0] == "set") {
        value = tokens[2];
    } else {
        print(variable.name + " = '" + value + "'");
    }
    return true;
}

bool Console::parseAndExecute(const std::string& commandLine)
{
    std::vector<std::string> tokens;
    if (!tokenize(commandLine, tokens)) {
        return fail("Error: Unterminated quotation");
    }
    if (tokens.empty()) {
        return fail("Error: Unable to parse command");
    }
    const auto found = m_Commands.find(tokens[0]);
    if (found == m_Commands.end()) {
        return fail("Error: Unknown command: '" + tokens[0] + "'");
    }
    const TCommand& command = found->second;
    const std::size_t parameterCount = tokens.size() - 1;
    if (parameterCount < static_cast<unsigned int>(command.minParameters)) {
        return fail("Error: Too few parameters for command");
    }
    if (parameterCount > static_cast<unsigned int>(command.maxParameters)) {
        return fail("Error: Too many parameters for command");
    }
    // The handler may remove its own command, so `command` must not be used after this call.
    return command.command->execute(tokens);
}

bool Console::fail(const std::string& message)
{
    print(message);
    return false;
}

} // namespace qor

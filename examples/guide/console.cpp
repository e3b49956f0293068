// SPDX-License-Identifier: MIT
// Adds a command and a variable to a console, and types command lines.
#include <iostream>
#include <string>
#include <vector>

#include <qor/Console.h>
#include <qor/StringUtil.h>

/// A command that prints the sum of its parameters.
class Sum : public qor::ConsoleCommand
{
public:
    explicit Sum(qor::Console& console) : m_Console(console) {}

    bool execute(const std::vector<std::string>& tokens) override
    {
        float sum = 0.0f;
        for (std::size_t i = 1; i < tokens.size(); ++i) {
            sum += qor::StringUtil::stringToFloat(tokens[i]);
        }
        m_Console.print(qor::StringUtil::toString(sum, 1));
        return true;
    }

private:
    qor::Console& m_Console;
};

static void type(qor::Console& console, const std::string& text)
{
    for (const char character : text) {
        console.putChar(character);
    }
}

int main()
{
    qor::Console console(100); // keeps the newest 100 lines of output
    Sum sum(console);
    console.addCommand("sum", "NUMBER... Add numbers", 1, -1, &sum); // at least one parameter
    std::string player = "unknown";
    console.addVariable("player", "name of the player", qor::Console::VT_STRING, 0, 0, &player);

    type(console, "sum 20 21x\n 1.5\r"); // the line feed deletes the x
    type(console, "set player \"Ada L\"\r");
    type(console, "get player\r");
    type(console, "sum\r");
    type(console, "jump\r");
    type(console, "get pla"); // still being typed

    std::vector<std::string> lines;
    console.getOutput(lines, 20, 0); // newest first
    for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
        std::cout << *line << '\n';
    }
    std::cout << "> " << console.getCommandLine() << "_\n"
              << "The player is " << player << ".\n";
}

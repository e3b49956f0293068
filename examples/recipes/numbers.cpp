// SPDX-License-Identifier: MIT
// Gives a console variables that are numbers, with limits. Feeds the console whole lines.
#include <algorithm>
#include <charconv>
#include <iostream>
#include <list>
#include <string>
#include <system_error>
#include <vector>

#include <qor/Configuration.h>
#include <qor/Console.h>

/// Returns whether a text is an integer and nothing else. Configuration::set ignores the rest of
/// "5knots".
static bool isInteger(const std::string& text)
{
    int number = 0;
    const char* const textEnd = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), textEnd, number);
    return error == std::errc() && end == textEnd;
}

/// Shows integer parameters of a configuration as variables of a console. The console stores texts;
/// the configuration applies its limits.
class ConsoleVariables : public qor::Configuration::Listener
{
public:
    ConsoleVariables(qor::Console& console, qor::Configuration& table)
        : m_Console(console), m_Table(table)
    {
        m_Table.addListener(this);
    }
    ConsoleVariables(const ConsoleVariables&) = delete;
    ConsoleVariables& operator=(const ConsoleVariables&) = delete;
    ~ConsoleVariables() override { m_Table.removeListener(this); }

    /// @param name a parameter
    void add(const std::string& name, const std::string& help)
    {
        m_Variables.push_back({name, help, m_Table.get(name)});
        m_Console.addVariable(name, help, qor::Console::VT_STRING, 0, 0, &m_Variables.back().text);
    }

    /// Keeps the texts up to date if a command or another part of the program changes a parameter.
    void parameterChanged(const std::string& name) override
    {
        for (TVariable& variable : m_Variables) {
            if (variable.name == name) {
                variable.text = m_Table.get(name);
            }
        }
    }

    /// Runs a line, then takes over the variables that it has set.
    void runLine(const std::string& line)
    {
        // A line feed would delete characters, a carriage return would run the line so far, and
        // other characters would be dropped, which could change the meaning of the line.
        const auto isTypable = [](char character) { return character >= ' ' && character <= '~'; };
        if (!std::all_of(line.begin(), line.end(), isTypable)) {
            m_Console.print("Error: A line has characters that cannot be typed");
            return;
        }
        for (const char character : line) {
            m_Console.putChar(character);
        }
        m_Console.putChar('\r');
        for (TVariable& variable : m_Variables) {
            if (variable.text != m_Table.get(variable.name) &&
                !(isInteger(variable.text) && m_Table.set(variable.name, variable.text))) {
                m_Console.print("Error: " + variable.help);
            }
            variable.text = m_Table.get(variable.name); // within its limits, or as it was before
        }
    }

private:
    struct TVariable {
        std::string name;
        std::string help;
        std::string text; ///< the storage of the console's variable
    };

    qor::Console& m_Console;
    qor::Configuration& m_Table;
    std::list<TVariable> m_Variables; ///< a list, because the console has pointers to the texts
};

/// A command that changes a parameter itself.
class Brake : public qor::ConsoleCommand
{
public:
    explicit Brake(qor::Configuration& table) : m_Table(table) {}
    bool execute(const std::vector<std::string>&) override
    {
        return m_Table.setInteger("speed", m_Table.getInteger("speed") / 2);
    }

private:
    qor::Configuration& m_Table;
};

int main()
{
    qor::Configuration table(1);
    table.addIntegerParameter("speed", 5, 0, 30, 0);
    qor::Console console(100);
    Brake brake(table);
    console.addCommand("brake", "Halve the speed", 0, 0, &brake);
    ConsoleVariables variables(console, table);
    variables.add("speed", "speed is a number of knots from 0 to 30");

    for (const char* const line : {"get speed", "set speed fast", "set speed 5knots",
                                   "set speed 99", "brake", "get speed", "set speed 1\n2"}) {
        variables.runLine(line);
    }
    std::vector<std::string> lines;
    console.getOutput(lines, 100, 0);
    for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
        std::cout << *line << '\n';
    }
    std::cout << "The speed is " << table.getInteger("speed") << ".\n";
}

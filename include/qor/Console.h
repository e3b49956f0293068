#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "qor/ConsoleCommand.h"
#include "qor/Export.h"

namespace qor
{

/// A text console without a screen: the host feeds it typed characters and shows its lines.
///
/// A command line is a list of tokens separated by blanks. A token that begins with a double quote
/// goes on to the next double quote, blanks included; there is no escape character. Empty tokens
/// are dropped, so a variable cannot be set to an empty text from the command line. The first token
/// names the command. Whatever goes wrong is told as an output line that begins with "Error: ".
///
/// Two commands are there from the start: `set <variable> <value>` and `get <variable>`.
///
/// Commands and the storage of variables belong to the host and have to outlive their registration.
/// A console has no lock: all calls on it come from one thread at a time. Nothing fails but for
/// lack of memory, which shows as `std::bad_alloc` and changes nothing, except that a command line
/// may have been printed or run; it is not emptied then.
///
/// @code
/// qor::Console console(500);
/// std::string player = "nobody";
/// console.addVariable("player", "name of the player", qor::Console::VT_STRING, 0, 0, &player);
/// for (char character : std::string("set player \"Ada L\"\r")) {
///     console.putChar(character);
/// }
/// std::vector<std::string> lines;
/// console.getOutput(lines, 10, 0); // lines[0] is the newest: the echo of the line
/// @endcode
class QORTK_API Console : private ConsoleCommand
{
public:
    /// The kinds of a variable. `get` and `set` know VT_STRING, whose storage is a `std::string`;
    /// the others can be registered, and are refused by both.
    enum VariableType : int {
        VT_BOOLEAN = 0,
        VT_INTEGER = 1,
        VT_UNSIGNED = 2,
        VT_FLOAT = 3,
        VT_STRING = 4
    };

    /// @param maxOutputLines how many output lines are kept; a negative number keeps all
    explicit Console(int maxOutputLines);

    /// A copy has all lines, counters and tables of its source. Its built-in `get` and `set` remain
    /// those of the source: they read the source's variables, print to the source, and need the
    /// source to outlive the copy.
    /// @{
    Console(const Console& other);
    Console& operator=(const Console& other);
    /// @}

    ~Console() override;

    /// Registers a command.
    /// @param name what a line begins with; one that is taken keeps its earlier command
    /// @param help a description, kept for the host's own use
    /// @param minParameters fewest parameters that a line may give; negative: no line fits
    /// @param maxParameters most parameters that a line may give; negative: no limit
    /// @param command the host's handler; null changes nothing
    void addCommand(const std::string& name, const std::string& help, int minParameters,
                    int maxParameters, ConsoleCommand* command);

    /// Removes a command, the built-in ones included. A command may remove itself while it runs.
    void removeCommand(const std::string& name);

    /// Registers a variable.
    /// @param name one that is taken keeps its earlier variable
    /// @param type VT_STRING, or a kind that `get` and `set` refuse
    /// @param help,firstFloat,secondFloat kept, and without effect
    /// @param storage the host's variable, a `std::string` for VT_STRING. A VT_STRING variable
    ///        without storage is refused by `get` and `set` as one of another type is.
    void addVariable(const std::string& name, const std::string& help, VariableType type,
                     float firstFloat, float secondFloat, void* storage);

    /// Removes a variable; its storage stays untouched.
    void removeVariable(const std::string& name);

    /// Takes one typed character. Code 13 runs the command line: the line is printed, the command
    /// executed, and then the line emptied. Code 10 removes the last character. Codes 32 to 127 are
    /// appended. All others do nothing.
    ///
    /// A command that feeds characters from within its `execute` edits the very line that it was
    /// started from, which is still there; code 13 then runs that line anew.
    /// @return true
    bool putChar(char character);

    /// @return the text typed so far; while a command runs, the line that it was started from
    std::string getCommandLine() const;

    /// @return a number that moves with each change of the command line
    unsigned int getCommandLineModCount() const;

    /// Adds one line to the output, as it is, and drops the oldest one where there are too many.
    void print(const std::string& line);

    /// Fetches output lines, newest first.
    /// @param lines emptied, then filled
    /// @param lineCount how many lines at most
    /// @param skipCount how many of the newest lines to pass over; a negative number yields nothing
    void getOutput(std::vector<std::string>& lines, int lineCount, int skipCount) const;

    /// @return how many output lines there are
    int getOutputLenght() const;

    /// @return a number that grows by one with each line printed
    unsigned int getOutputModCount() const;

private:
    struct TCommand {
        std::string name;
        std::string help;
        int minParameters;
        int maxParameters;
        ConsoleCommand* command;
    };

    struct TVariable {
        std::string name;
        std::string help;
        VariableType type;
        float firstFloat;
        float secondFloat;
        void* storage;
    };

    bool execute(const std::vector<std::string>& tokens) override;
    bool parseAndExecute(const std::string& commandLine);
    bool fail(const std::string& message);

    std::string m_CommandLine;
    std::vector<std::string> m_Output; ///< a ring once it is full: see m_OldestOutput
    int m_MaxOutputLines;
    std::map<std::string, TVariable> m_Variables;
    std::map<std::string, TCommand> m_Commands;
    std::uint32_t m_OutputModCount;
    std::uint32_t m_CommandLineModCount;
    std::size_t m_OldestOutput; ///< index of the oldest line in m_Output
};

} // namespace qor

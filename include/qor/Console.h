// SPDX-License-Identifier: MIT
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

/// A text console without a screen. The host feeds it typed characters and displays its lines.
///
/// A command line is a list of tokens separated by spaces. A tab separates, too, but cannot be typed. A token that begins with a
/// double quote extends to the next double quote, spaces included; there is no escape character.
/// Empty tokens are dropped, so a variable cannot be set to an empty text from the command line.
/// The first token is the name of a command, the others are its parameters.
///
/// Two commands are built in: `set <variable> <value>` and `get <variable>`.
///
/// **Ownership**: commands and the storage of variables belong to the host. They must exist until
/// they are removed or until the last putChar(). The destructor does not use them.
///
/// **Error handling**: an error in a command line is printed as an output line that begins with
/// "Error: ". Only `std::bad_alloc` is thrown, and exceptions of commands pass through putChar().
/// A failed operation has no effect, with one exception: a failed putChar() keeps the command line,
/// but may have printed it and run its command.
///
/// **Thread safety**: there is no lock. All calls on a console must come from one thread at a time.
///
/// @code
/// qor::Console console(500);
/// std::string player = "unnamed";
/// console.addVariable("player", "name of the player", qor::Console::VT_STRING, 0, 0, &player);
/// for (char character : std::string("set player \"Ada L\"\r")) {
///     console.putChar(character);
/// }
/// std::vector<std::string> lines;
/// console.getOutput(lines, 10, 0); // lines[0] is the newest line: the echo of the command
/// @endcode
class QORTK_API Console : private ConsoleCommand
{
public:
    /// Types of variables. Variables of all types can be registered, but `get` and `set` accept
    /// only VT_STRING, whose storage is a `std::string`.
    enum VariableType : int {
        VT_BOOLEAN = 0,
        VT_INTEGER = 1,
        VT_UNSIGNED = 2,
        VT_FLOAT = 3,
        VT_STRING = 4
    };

    /// Name and description of a command or variable.
    struct TDescription {
        std::string name; ///< the name given at registration
        std::string help; ///< the description given at registration
    };

    /// Constructs a console with the two built-in commands and no output.
    /// @param maxOutputLines maximum number of output lines to keep; a negative number keeps all
    /// @throws std::bad_alloc if there is not enough memory
    explicit Console(int maxOutputLines);

    /// Copies all lines, counters, commands and variables. The built-in `get` and `set` of a copy
    /// remain those of the source: they use the source's variables, print to the source, and
    /// require it to outlive the copy.
    /// @param other console to copy
    /// @throws std::bad_alloc if there is not enough memory
    Console(const Console& other);

    /// Copies as the copy constructor does.
    /// @param other console to copy
    /// @return this console
    /// @throws std::bad_alloc if there is not enough memory; nothing is changed then
    Console& operator=(const Console& other);

    ~Console() override;

    /// Registers a command. If the name is taken, the earlier command keeps it.
    /// @param name first token of the lines that run the command
    /// @param help description for getCommands(); the console itself does not use it
    /// @param minParameters minimum number of parameters; a negative number rejects every line
    /// @param maxParameters maximum number of parameters; a negative number sets no limit
    /// @param command the command, owned by the host; null registers nothing
    /// @throws std::bad_alloc if there is not enough memory
    void addCommand(const std::string& name, const std::string& help, int minParameters,
                    int maxParameters, ConsoleCommand* command);

    /// Removes a command, including built-in ones. A command may remove itself while it runs.
    /// @param name name of the command; an unknown one changes nothing
    void removeCommand(const std::string& name);

    /// Registers a variable. If the name is taken, the earlier variable keeps it.
    /// @param name name for `get` and `set`
    /// @param help description for getVariables(); the console itself does not use it
    /// @param type VT_STRING, or a type that `get` and `set` reject
    /// @param firstFloat stored and not used
    /// @param secondFloat stored and not used
    /// @param storage the host's variable, a `std::string` for VT_STRING. `get` and `set` reject a
    ///        VT_STRING variable without storage as they reject other types.
    /// @throws std::bad_alloc if there is not enough memory
    void addVariable(const std::string& name, const std::string& help, VariableType type,
                     float firstFloat, float secondFloat, void* storage);

    /// Removes a variable. Its storage is not touched.
    /// @param name name of the variable; an unknown one changes nothing
    void removeVariable(const std::string& name);

    /// Returns all commands in bytewise order of their names, for a `help` command or for
    /// completion. Takes time proportional to their number.
    /// @return copies, including the built-in commands
    /// @throws std::bad_alloc if there is not enough memory
    [[nodiscard]] std::vector<TDescription> getCommands() const;

    /// Returns all variables in bytewise order of their names. Takes time proportional to their
    /// number.
    /// @return copies
    /// @throws std::bad_alloc if there is not enough memory
    [[nodiscard]] std::vector<TDescription> getVariables() const;

    /// Processes one typed character. Code 13 runs a command line that is not empty: it prints the
    /// line, executes the command, and clears the line. Code 10 removes the last character. Codes
    /// 32 to 127 are appended. All other codes, including bytes above 127, are ignored. The host
    /// converts the codes of its Backspace key, often 8 or 127, to 10.
    ///
    /// A command that calls putChar() from its `execute` edits the line that is running; code 13
    /// then runs that line again.
    /// @param character code of the character
    /// @return always true
    /// @throws std::bad_alloc if there is not enough memory, see the class description
    bool putChar(char character);

    /// Returns the command line. While a command runs, it is still the line that started it.
    /// @return a copy
    /// @throws std::bad_alloc if there is not enough memory
    [[nodiscard]] std::string getCommandLine() const;

    /// Returns a counter of the changes of the command line.
    /// @return the number of changes, modulo 2 to the power of 32
    [[nodiscard]] unsigned int getCommandLineModCount() const noexcept;

    /// Appends a line to the output as it is. If that exceeds the maximum number of lines, the
    /// oldest line is dropped and its memory released or reused. Takes time proportional to the
    /// length of the line.
    /// @param line text of the line
    /// @throws std::bad_alloc if there is not enough memory
    void print(const std::string& line);

    /// Copies output lines, newest first.
    /// @param[out] lines replaced by the lines
    /// @param lineCount maximum number of lines to copy
    /// @param skipCount number of the newest lines to skip; a negative number gives no lines
    /// @throws std::bad_alloc if there is not enough memory
    void getOutput(std::vector<std::string>& lines, int lineCount, int skipCount) const;

    /// Returns the number of output lines.
    /// @return the lines that getOutput() can copy, at most the maximum of the constructor
    [[nodiscard]] int getOutputLenght() const noexcept;

    /// Returns a counter of the printed lines, including dropped ones.
    /// @return the number of lines, modulo 2 to the power of 32
    [[nodiscard]] unsigned int getOutputModCount() const noexcept;

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

    // Defined in the source file; inline, so that the shared library does not export it.
    inline void swap(Console& other) noexcept;

    std::string m_CommandLine;
    std::vector<std::string> m_Output; ///< a ring buffer once it is full: see m_OldestOutput
    int m_MaxOutputLines;
    std::map<std::string, TVariable> m_Variables;
    std::map<std::string, TCommand> m_Commands;
    std::uint32_t m_OutputModCount;
    std::uint32_t m_CommandLineModCount;
    std::size_t m_OldestOutput; ///< index of the oldest line in m_Output
};

} // namespace qor

// SPDX-License-Identifier: MIT
#include <vector>

#include "FuzzInput.h"
#include "qor/Console.h"

namespace
{

/// Types characters into a console and checks the state of the console after each one.
struct TypingHost : qor::ConsoleCommand {
    explicit TypingHost(int maxLines)
        : maxCount(static_cast<unsigned int>(maxLines)), console(maxLines)
    {
        console.addCommand("any", "", 0, -1, this);
        console.addCommand("few", "", 1, 2, this);
        console.addCommand("never", "", -1, 2, this);
        console.addVariable("text", "", qor::Console::VT_STRING, 0, 0, &text);
        console.addVariable("lost", "", qor::Console::VT_STRING, 0, 0, nullptr);
        console.addVariable("number", "", qor::Console::VT_INTEGER, 0, 0, &number);
    }

    void type(char character)
    {
        const std::string before = console.getCommandLine();
        const unsigned int changes = console.getCommandLineModCount();
        const unsigned int printed = console.getOutputModCount();
        const int callsBefore = calls;
        require(console.putChar(character));
        std::string line = character == '\r' ? "" : before;
        if (static_cast<signed char>(character) >= ' ') {
            line += character;
        } else if (character == '\n' && !before.empty()) {
            line.pop_back();
        }
        require(console.getCommandLine() == line);
        const unsigned int change = line == before ? 0 : 1;
        require(calls > callsBefore || console.getCommandLineModCount() == changes + change);

        const unsigned int added = console.getOutputModCount() - printed;
        const unsigned int kept = std::min(console.getOutputModCount(), maxCount);
        require((added > 0) == (character == '\r' && !before.empty()));
        require(console.getOutputLenght() == static_cast<int>(kept));
        std::vector<std::string> echo;
        console.getOutput(echo, 1, static_cast<int>(added) - 1);
        require(added > 0 && added <= kept ? echo.at(0) == before : echo.empty());
    }

    /// Types the words of the last command again, in quotation marks unless they contain one, and
    /// checks that the console splits the line into the same words.
    void typeWords()
    {
        type('\r');
        const std::vector<std::string> former = words;
        std::string line;
        for (const std::string& word : former) {
            line += word.find('"') == std::string::npos ? '"' + word + '"' : ' ' + word + ' ';
        }
        for (const char character : line + '\r') {
            type(character);
        }
        require(words == former);
    }

    bool execute(const std::vector<std::string>& tokens) override
    {
        require(tokens[0] == "any" || (tokens[0] == "few" && tokens.size() - 2 < 2));
        words = tokens;
        // The first two calls type their last word into the console: `~` is Enter, `^` deletes.
        for (const char character : ++calls < 3 ? tokens.back() : "") {
            type(character == '~' ? '\r' : character == '^' ? '\n' : character);
        }
        return true;
    }

    const unsigned int maxCount;
    qor::Console console;
    std::vector<std::string> words; ///< of the last command
    int calls = 0;
    std::string text;
    int number = 42;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzInput input(data, size);
    TypingHost host(input.takeByte() % 16 - 1);
    while (!input.isEmpty()) {
        host.type(static_cast<char>(input.takeByte()));
    }
    host.calls = 3;
    host.typeWords();
    host.words = {"get", "text"};
    host.typeWords();
    std::vector<std::string> lines;
    host.console.getOutput(lines, 1, 0);
    require(lines.empty() || lines[0] == "text = '" + host.text + "'");
    require(host.number == 42);
    return 0;
}

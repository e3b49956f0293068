#include <vector>

#include "FuzzInput.h"
#include "qor/Console.h"

namespace
{

/// Host that checks the state of its console after each character.
struct THost : qor::ConsoleCommand {
    explicit THost(int maxLines) : most(static_cast<unsigned int>(maxLines)), console(maxLines)
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
        const unsigned int kept = std::min(console.getOutputModCount(), most);
        require((added > 0) == (character == '\r' && !before.empty()));
        require(console.getOutputLenght() == static_cast<int>(kept));
        std::vector<std::string> echo;
        console.getOutput(echo, 1, static_cast<int>(added) - 1);
        require(added > 0 && added <= kept ? echo.at(0) == before : echo.empty());
    }

    /// Types the words again, one by one in quotes where they may be.
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
        // The last word is typed again from within. ~ and ^ mean the control characters.
        for (const char character : ++calls < 3 ? tokens.back() : "") {
            type(character == '~' ? '\r' : character == '^' ? '\n' : character);
        }
        return true;
    }

    const unsigned int most;
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
    THost host(input.takeByte() % 16 - 1);
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

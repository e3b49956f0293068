#include "qor/Console.h"

#include <algorithm>
#include <functional>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "TestData.h"

using qor::Console;

static_assert(!std::is_convertible_v<Console*, qor::ConsoleCommand*>,
              "a console is no command of its host");

namespace
{

using TLines = std::vector<std::string>;

struct TCommand : qor::ConsoleCommand {
    bool execute(const TLines& tokens) override
    {
        action(tokens);
        return false;
    }

    std::function<void(const TLines&)> action;
};

void type(Console& console, const std::string& text)
{
    for (const char character : text) {
        EXPECT_TRUE(console.putChar(character));
    }
}

TLines getLines(const Console& console)
{
    TLines lines;
    console.getOutput(lines, console.getOutputLenght(), 0);
    std::reverse(lines.begin(), lines.end());
    return lines;
}

/// Enters a line and expects one line of answer, or none where that is a dash, behind the echo.
void expectAnswer(Console& console, const std::string& line, const std::string& answer)
{
    const unsigned int outputCount = console.getOutputModCount();
    const unsigned int lineCount = console.getCommandLineModCount();
    type(console, line + '\r');
    TLines lines, expected{line};
    if (answer != "-") {
        expected.insert(expected.begin(), answer);
    }
    console.getOutput(lines, static_cast<int>(console.getOutputModCount() - outputCount), 0);
    EXPECT_EQ(lines, expected);
    EXPECT_EQ(console.getCommandLine(), "");
    EXPECT_EQ(console.getCommandLineModCount() - lineCount, line.size() + 1);
}

} // namespace

TEST(ConsoleTest, LinesAreSplitAndDispatched)
{
    Console console(-1);
    TCommand command, later;
    command.action = [&console](const TLines& tokens) {
        std::string line;
        for (const std::string& token : tokens) {
            line += '[' + token + ']';
        }
        console.print(line);
    };
    later.action = [&console](const TLines&) { console.print("later"); };
    console.addCommand("do", "", 0, -1, &command);
    console.addCommand("pair", "", 1, 2, &command);
    console.addCommand("never", "", -1, -1, &command);
    console.addCommand("null", "", 0, -1, nullptr);
    std::string name = "Ada", other = "other", pair = "p";
    int number = 7;
    console.addVariable("name", "", Console::VT_STRING, 1, 2, &name);
    console.addVariable("pair", "", Console::VT_STRING, 1, 2, &pair);
    console.addVariable("number", "", Console::VT_INTEGER, 1, 2, &number);
    console.addVariable("bare", "", Console::VT_STRING, 1, 2, nullptr);
    // The first one to take a name keeps it.
    console.addCommand("pair", "", 0, -1, &later);
    console.addCommand("get", "", 0, -1, &later);
    console.addVariable("name", "", Console::VT_INTEGER, 1, 2, &other);
    for (const auto& test : readTable("console-lines")) {
        expectAnswer(console, test[0], test[1]);
    }
    EXPECT_EQ(name + std::to_string(number) + other, "Ada L7other");

    console.removeCommand("unknown");
    console.removeCommand("get");
    console.removeVariable("name");
    expectAnswer(console, "get name", "Error: Unknown command: 'get'");
    expectAnswer(console, "set name x", "Error: Variable not found");
    console.addCommand("get", "", 0, -1, &later);
    console.addVariable("name", "", Console::VT_STRING, 1, 2, &other);
    expectAnswer(console, "get", "later");
    expectAnswer(console, "set name x", "-");
    EXPECT_EQ(name + other, "Ada Lx");
}

TEST(ConsoleTest, CommandsMayChangeTheConsoleTheyRunIn)
{
    Console console(-1);
    TCommand once;
    once.action = [&console](const TLines&) {
        console.removeCommand("once");
        console.print(console.getCommandLine() + "\n" +
                      std::to_string(console.getCommandLineModCount()));
        type(console, "more");
    };
    console.addCommand("once", "", 0, 0, &once);
    type(console, "once\ronce\r");
    EXPECT_EQ(console.getCommandLineModCount(), 14u);
    EXPECT_EQ(getLines(console),
              (TLines{"once", "once\n4", "once", "Error: Unknown command: 'once'"}));
}

TEST(ConsoleTest, OutputKeepsTheNewestLines)
{
    for (const int most : {0, 1, 2, 5, -1}) {
        Console console(most);
        TLines kept;
        for (unsigned int i = 0; i < 13; ++i) {
            kept.insert(kept.begin(), i == 3 ? "" : "line " + std::to_string(i));
            console.print(kept.front());
            kept.resize(std::min(kept.size(), static_cast<std::size_t>(most)));
            EXPECT_EQ(console.getOutputModCount(), i + 1);
            EXPECT_EQ(console.getOutputLenght(), static_cast<int>(kept.size()));
            for (int skip = -1; skip < 15; ++skip) {
                for (const int count : {-1, 0, 1, 2, 4, 20}) {
                    const int end = std::min(skip + count, static_cast<int>(kept.size()));
                    const bool none = skip < 0 || count <= 0 || end <= skip;
                    const TLines expected =
                        none ? TLines() : TLines(kept.begin() + skip, kept.begin() + end);
                    TLines lines{"old"};
                    console.getOutput(lines, count, skip);
                    EXPECT_EQ(lines, expected) << most << ' ' << skip << ' ' << count;
                }
            }
        }
    }
}

TEST(ConsoleTest, BuiltInCommandsOfACopyWorkOnItsSource)
{
    std::string value = "2";
    Console source(-1);
    type(source, "half");
    Console copy(source), full(2), other(9);
    EXPECT_EQ(copy.getCommandLine(), "half");
    EXPECT_EQ(copy.getCommandLineModCount(), 4u);
    source.addVariable("after", "", Console::VT_STRING, 0, 0, &value);
    type(copy, "\n\n\n\nget after\r");
    EXPECT_EQ(getLines(copy), TLines{"get after"});
    EXPECT_EQ(getLines(source), TLines{"after = '2'"});
    for (const char* line : {"1", "2", "3"}) {
        full.print(line);
    }
    other = full;
    other.print("4");
    EXPECT_EQ(getLines(full), (TLines{"2", "3"}));
    EXPECT_EQ(getLines(other), (TLines{"3", "4"}));
}

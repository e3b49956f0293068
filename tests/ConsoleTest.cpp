// SPDX-License-Identifier: MIT
#include "qor/Console.h"

#include <algorithm>
#include <functional>
#include <type_traits>

#include "TestData.h"

using qor::Console;

static_assert(!std::is_convertible_v<Console*, qor::ConsoleCommand*>,
              "a console cannot be registered as a command");

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

/// Enters a line and expects its echo, then one line of output, or none if `answer` is a dash.
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

TEST(ConsoleTest, SplitsAndDispatchesLines)
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
    // The first registration of a name remains.
    console.addCommand("pair", "", 0, -1, &later);
    console.addCommand("get", "", 0, -1, &later);
    console.addVariable("name", "", Console::VT_INTEGER, 1, 2, &other);
    for (const auto& test : readTable("console-lines")) {
        expectAnswer(console, test[0], test[1]);
    }
    EXPECT_EQ(name, "Ada L");
    EXPECT_EQ(number, 7);
    EXPECT_EQ(other, "other");

    console.removeCommand("unknown");
    console.removeCommand("get");
    console.removeVariable("name");
    expectAnswer(console, "get name", "Error: Unknown command: 'get'");
    expectAnswer(console, "set name x", "Error: Variable not found");
    console.addCommand("get", "", 0, -1, &later);
    console.addVariable("name", "", Console::VT_STRING, 1, 2, &other);
    expectAnswer(console, "get", "later");
    expectAnswer(console, "set name x", "-");
    EXPECT_EQ(name, "Ada L");
    EXPECT_EQ(other, "x");
}

TEST(ConsoleTest, CommandsMayChangeTheirConsole)
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

TEST(ConsoleTest, KeepsNoOutputWithMaximumZero)
{
    std::string name = "Ada";
    Console console(0);
    console.addVariable("name", "", Console::VT_STRING, 0, 0, &name);
    type(console, "set name Bob\rget name\rget none\r");
    EXPECT_EQ(name, "Bob");
    EXPECT_EQ(getLines(console), TLines());
    EXPECT_EQ(console.getOutputModCount(), 5u);
}

TEST(ConsoleTest, KeepsNewestLines)
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

TEST(ConsoleTest, ListsCommandsAndVariablesByName)
{
    const auto join = [](const std::vector<Console::TDescription>& entries) {
        std::string text;
        for (const Console::TDescription& entry : entries) {
            text += entry.name + ": " + entry.help + "; ";
        }
        return text;
    };
    Console console(1);
    TCommand command;
    console.addCommand("hide", "Hide it", 0, 0, &command);
    console.addVariable("size", "Its size", Console::VT_FLOAT, 0, 0, nullptr);
    console.addVariable("name", "Its name", Console::VT_STRING, 0, 0, nullptr);
    EXPECT_EQ(join(console.getCommands()),
              "get: Get value of console variable (get <variable>); hide: Hide it; "
              "set: Set value of console variable (set <variable> <value>); ");
    EXPECT_EQ(join(console.getVariables()), "name: Its name; size: Its size; ");
}

TEST(ConsoleTest, CopiesHaveAllMembers)
{
    std::string value = "2";
    TCommand command;
    Console source(3), assigned(9);
    command.action = [&source](const TLines&) { source.print("done"); };
    source.addCommand("do", "", 0, 0, &command);
    source.addVariable("number", "", Console::VT_STRING, 0, 0, &value);
    type(source, "x\ry\rhalf"); // two lines and two messages, of which three are kept
    const TLines output = getLines(source);
    const Console copy(source);
    assigned = source;
    *&assigned = assigned;
    const Console* const copies[] = {&copy, &assigned};
    for (const Console* const original : copies) {
        Console console(*original);
        EXPECT_EQ(console.getCommandLine(), "half");
        EXPECT_EQ(console.getCommandLineModCount(), 8u);
        EXPECT_EQ(console.getOutputModCount(), 4u);
        EXPECT_EQ(getLines(console), output);
        // The maximum is copied, the oldest line is the same, and lines are not shared.
        console.print("new");
        EXPECT_EQ(getLines(console), (TLines{output[1], output[2], "new"}));
        type(console, "\n\n\n\ndo\r");
        EXPECT_EQ(getLines(console).back(), "do");
        EXPECT_EQ(getLines(source).back(), "done");
        // The built-in commands of a copy work on its source.
        type(console, "get number\r");
        EXPECT_EQ(getLines(console).back(), "get number");
        EXPECT_EQ(getLines(source).back(), "number = '2'");
        EXPECT_EQ(console.getOutputModCount(), 7u);
    }
    EXPECT_EQ(source.getOutputModCount(), 8u);
    // Variables show where the built-in commands are: assign them back to the source.
    assigned.addVariable("late", "", Console::VT_STRING, 0, 0, &value);
    source = assigned;
    type(source, "\n\n\n\nget late\r");
    EXPECT_EQ(getLines(source).back(), "late = '2'");
}

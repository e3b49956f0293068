// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "qor/qor.h"

// Compares a typed command line with the minimum that a console has to do: append the characters to
// a line, keep the line as output, split it at blanks and quotation marks, and look up the command.

namespace
{

const std::string LINE = "move harbour/pier \"north basin\" 42\r";
const char* const NAMES[] = {"add", "delete", "help", "load", "move", "quit", "save", "tree"};
constexpr int OUTPUT_LINES = 100;

class CountingCommand : public qor::ConsoleCommand
{
public:
    bool execute(const std::vector<std::string>& tokens) override
    {
        count += tokens.size();
        return true;
    }
    std::size_t count = 0;
};

void runConsole(benchmark::State& state)
{
    CountingCommand command;
    qor::Console console(OUTPUT_LINES);
    for (const char* name : NAMES) {
        console.addCommand(name, "", 0, -1, &command);
    }
    for (auto _ : state) {
        for (const char character : LINE) {
            console.putChar(character);
        }
    }
    if (command.count != static_cast<std::size_t>(state.iterations()) * 4) {
        state.SkipWithError("the command did not run as typed");
    }
    state.SetItemsProcessed(state.iterations());
}

std::vector<std::string> split(const std::string& line)
{
    std::vector<std::string> tokens;
    for (std::size_t position = 0; position < line.size();) {
        if (line[position] == ' ') {
            ++position;
            continue;
        }
        const bool quoted = line[position] == '"';
        const std::size_t begin = position + (quoted ? 1 : 0);
        const std::size_t end = std::min(line.find(quoted ? '"' : ' ', begin), line.size());
        tokens.push_back(line.substr(begin, end - begin));
        position = end + (quoted ? 1 : 0);
    }
    return tokens;
}

void runByHand(benchmark::State& state)
{
    std::size_t count = 0;
    std::map<std::string, std::function<void(const std::vector<std::string>&)>> commands;
    for (const char* name : NAMES) {
        commands[name] = [&count](const auto& tokens) { count += tokens.size(); };
    }
    std::vector<std::string> output;
    std::string line;
    for (auto _ : state) {
        for (const char character : LINE) {
            if (character != '\r') {
                line += character;
                continue;
            }
            if (output.size() == OUTPUT_LINES) {
                output.clear();
            }
            output.push_back(line);
            const std::vector<std::string> tokens = split(line);
            commands.find(tokens[0])->second(tokens);
            line.clear();
        }
    }
    benchmark::DoNotOptimize(count);
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK(runConsole)->Name("line/command/qortk");
BENCHMARK(runByHand)->Name("line/command/by hand");

} // namespace

BENCHMARK_MAIN();

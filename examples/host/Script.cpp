#include "Script.h"

#include <istream>
#include <ostream>
#include <string>
#include <vector>

#include "Host.h"

namespace
{

void writeLines(std::ostream& output, const std::vector<std::string>& newestFirst)
{
    for (auto line = newestFirst.rbegin(); line != newestFirst.rend(); ++line) {
        output << *line << '\n';
    }
    output.flush();
}

/// Runs the command line typed so far, and writes what is printed meanwhile.
void runLine(Host& host, std::ostream& output, bool echoes)
{
    const qor::Console& console = host.getConsole();
    const unsigned int countBefore = console.getOutputModCount();
    host.putChar(Host::ENTER);

    std::vector<std::string> lines;
    console.getOutput(lines, static_cast<int>(console.getOutputModCount() - countBefore), 0);
    if (lines.empty()) {
        return;
    }
    // The oldest line is the console's own echo of the command line.
    if (echoes) {
        lines.back().insert(0, "> ");
    } else {
        lines.pop_back();
    }
    writeLines(output, lines);
}

} // namespace

bool runScript(Host& host, std::istream& input, std::ostream& output, bool echoes)
{
    std::vector<std::string> lines;
    host.getConsole().getOutput(lines, host.getConsole().getOutputLenght(), 0);
    writeLines(output, lines);

    char character;
    while (output && !host.isQuitting() && input.get(character)) {
        if (character == '\n') {
            runLine(host, output, echoes);
        } else if (character != '\r') {
            host.putChar(character == '\t' ? ' ' : character);
        }
    }
    if (output && !host.isQuitting()) {
        // The last line may have no end; without any text this does nothing.
        runLine(host, output, echoes);
    }
    return output && !host.hasFailed();
}

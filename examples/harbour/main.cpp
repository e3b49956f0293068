// SPDX-License-Identifier: MIT
#include <cstdlib>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include <qor/File.h>
#include <qor/StringUtil.h>

#include "Harbour.h"
#include "Window.h"
#include "shared/Program.h"
#include "shared/SessionCommands.h"

namespace
{

constexpr const char* USAGE =
    "Usage: qorharbour [--frames N] [--time HOUR] [--screenshot FILE] [--run COMMAND]... "
    "[--log FILE] [--config FILE] [SCENE.xml]\n"
    "Watch the ships of a harbour. F1 opens the console; its command 'help' lists all commands.\n"
    "  --frames N         run N frames by a fixed step, without the user's files, and end\n"
    "  --time HOUR        begin at an hour of the day, from 0 to 24\n"
    "  --screenshot FILE  write the last frame to a TGA file and print its checksums\n"
    "  --run COMMAND      run a command of the console first\n"
    "  --log FILE         write the log to FILE instead of the user's data directory\n"
    "  --config FILE      keep the settings in FILE instead of the user's data directory\n"
    "  --help             print this text\n";

/// Runs the commands of the arguments.
void runCommands(Harbour& harbour, const Arguments& arguments)
{
    std::vector<std::string> lines = arguments.getAll("--run");
    if (arguments.has("--time")) {
        lines.insert(lines.begin(), "time " + arguments.get("--time"));
    }
    if (arguments.has("--frames") || !lines.empty()) {
        harbour.finishLoading();
    }
    for (const std::string& line : lines) {
        harbour.enterLine(line);
        harbour.finishLoading();
    }
}

void printConsole(const Harbour& harbour)
{
    std::vector<std::string> lines;
    harbour.getConsole().getOutput(lines, harbour.getConsole().getOutputLenght(), 0);
    for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
        std::cout << *line << '\n';
    }
}

int runHarbour(const Arguments& arguments)
{
    const bool isTest = arguments.has("--frames");
    const int frameCount = qor::StringUtil::stringToInt(arguments.get("--frames"));
    if (isTest && frameCount < 1) {
        throw std::runtime_error("The value of --frames is not a number from 1");
    }
    Harbour harbour(!isTest);
    addLogCommands(harbour, isTest ? "" : harbour.openLog(arguments.get("--log")));
    if (!isTest) {
        loadSettings(harbour, arguments);
    }
    // The rate would be in the picture, which must be the same each time.
    qor::Configuration& settings = harbour.getSettings().getTable();
    settings.setBoolean("show/rate", !isTest && settings.getBoolean("show/rate"));
    const std::string userScene = harbour.getDocument().getFilename();
    if (!arguments.getFile().empty() || qor::File::fileExists(userScene)) {
        harbour.startLoading(arguments.getFile().empty() ? userScene : arguments.getFile());
    }
    Window window(harbour);
    runCommands(harbour, arguments);
    window.run(frameCount);
    const bool hasScreenshot =
        !arguments.has("--screenshot") || harbour.takeScreenshot(arguments.get("--screenshot"));
    if (isTest) {
        printConsole(harbour);
        return hasScreenshot && !harbour.hasFailed() ? EXIT_SUCCESS : EXIT_FAILURE;
    }
    return saveSettings(harbour) == EXIT_SUCCESS && hasScreenshot ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

int main(int argumentCount, char** argumentValues)
{
    const TProgram program = {"qorharbour",
                              USAGE,
                              {},
                              {"--frames", "--time", "--screenshot", "--run", "--log", "--config"},
                              runHarbour};
    return runProgram(program, argumentCount, argumentValues);
}

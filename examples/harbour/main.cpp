// SPDX-License-Identifier: MIT
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include <qor/File.h>
#include <qor/Log.h>
#include <qor/StringUtil.h>

#include "Harbour.h"
#include "Window.h"

namespace
{

constexpr int BAD_USAGE = 2;
constexpr const char* USAGE =
    "Usage: qorharbour [--frames N] [--time HOUR] [--screenshot FILE] [--run COMMAND]... "
    "[SCENE.xml]\n"
    "Watch the ships of a harbour. F1 opens the console; its command 'help' lists all commands.\n"
    "  --frames N         run N frames by a fixed step, without the user's files, and end\n"
    "  --time HOUR        begin at an hour of the day, from 0 to 24\n"
    "  --screenshot FILE  write the last frame to a TGA file and print its checksums\n"
    "  --run COMMAND      run a command of the console first\n"
    "  --stats            print the milliseconds a frame at the end\n"
    "  --art DIRECTORY    where the pictures are\n"
    "  --help             print this text\n";

struct TArguments {
    bool isValid = true, wantsHelp = false, wantsStats = false;
    int frameCount = 0;
    float hour = -1.0f;
    std::string screenshot, scene, art = QORHARBOUR_ART;
    std::vector<std::string> commands;
};

/// Stores the value of an option.
/// @return whether the option exists and takes the value
bool readOption(TArguments& arguments, const std::string& name, const std::string& value)
{
    if (name == "--frames") {
        arguments.frameCount = qor::StringUtil::stringToInt(value);
        return arguments.frameCount > 0;
    }
    if (name == "--time") {
        arguments.hour = qor::StringUtil::stringToFloat(value);
        return value.find_first_not_of("0123456789.") == std::string::npos && !value.empty() &&
               arguments.hour < 24.0f;
    }
    if (name == "--run") {
        arguments.commands.push_back(value);
        return true;
    }
    if (name != "--screenshot" && name != "--art") {
        return false;
    }
    (name == "--art" ? arguments.art : arguments.screenshot) = value;
    return true;
}

TArguments readArguments(int count, char** values)
{
    TArguments arguments;
    for (int i = 1; i < count; ++i) {
        const std::string name = values[i];
        if (name == "--help") {
            arguments.wantsHelp = true;
        } else if (name == "--stats") {
            arguments.wantsStats = true;
        } else if (!name.empty() && name.front() != '-' && arguments.scene.empty()) {
            arguments.scene = name;
        } else {
            ++i;
            arguments.isValid =
                arguments.isValid && i < count && readOption(arguments, name, values[i]);
        }
    }
    return arguments;
}

/// Loads the scene that was asked for or else the user's own. If that fails, or does not exist, the
/// scene of the program follows.
void loadScene(Harbour& harbour, const TArguments& arguments, const std::string& userDirectory)
{
    const std::string userFile =
        userDirectory.empty() ? "" : qor::File::filePath(userDirectory, "scene.xml");
    const std::string file = arguments.scene.empty() ? userFile : arguments.scene;
    if (!arguments.scene.empty() || qor::File::fileExists(file)) {
        harbour.load(file, file);
        harbour.waitForScene();
    }
    if (harbour.getScene().getRoutes().empty()) {
        // A file that exists, but was not read, must not be overwritten.
        harbour.load(qor::File::filePath(arguments.art, "scene.xml"),
                     qor::File::fileExists(userFile) ? "" : userFile);
    }
}

void printOutput(const qor::Console& console)
{
    std::vector<std::string> lines;
    console.getOutput(lines, console.getOutputLenght(), 0);
    for (std::size_t i = lines.size(); i > 0; --i) {
        std::cout << lines[i - 1] << '\n';
    }
}

int runHarbour(const TArguments& arguments)
{
    Harbour harbour(arguments.art);
    std::string userDirectory;
    bool keepsSettings = false;
    if (arguments.frameCount == 0) {
        userDirectory = qor::File::getUserDataDirectory("qorharbour", true);
        if (!userDirectory.empty()) {
            qor::Log::open(qor::File::filePath(userDirectory, "qorharbour.log").c_str(), true);
            keepsSettings =
                harbour.getSettings().load(qor::File::filePath(userDirectory, "settings.xml")) ||
                harbour.fail("Cannot read the settings; they will not be saved");
        }
    }
    // The rate would show in the picture, which is to be the same each time.
    harbour.getSettings().getTable().setBoolean(
        "show/rate",
        arguments.frameCount == 0 && harbour.getSettings().getTable().getBoolean("show/rate"));
    Window window(harbour);
    loadScene(harbour, arguments, userDirectory);
    if (arguments.frameCount > 0 || arguments.hour >= 0.0f || !arguments.commands.empty()) {
        harbour.waitForScene();
    }
    if (arguments.hour >= 0.0f) {
        harbour.setHour(arguments.hour);
    }
    for (const std::string& command : arguments.commands) {
        harbour.runLine(command);
        harbour.waitForScene();
    }
    if (arguments.frameCount > 0) {
        window.run(arguments.frameCount);
    } else {
        window.run();
    }
    if (arguments.wantsStats) {
        harbour.runLine("stats");
    }
    const bool isWritten =
        arguments.screenshot.empty() || harbour.takeScreenshot(arguments.screenshot);
    if (arguments.frameCount > 0) {
        printOutput(harbour.getConsole());
    }
    if (keepsSettings) {
        harbour.waitForScene();
        harbour.getSettings().save();
    }
    return isWritten ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

int main(int argumentCount, char** argumentValues)
try {
    const TArguments arguments = readArguments(argumentCount, argumentValues);
    if (!arguments.isValid || arguments.wantsHelp) {
        (arguments.isValid ? std::cout : std::cerr) << USAGE;
        return arguments.isValid ? EXIT_SUCCESS : BAD_USAGE;
    }
    return runHarbour(arguments);
} catch (const std::exception& exception) {
    std::cerr << "qorharbour: " << exception.what() << '\n';
    return EXIT_FAILURE;
}

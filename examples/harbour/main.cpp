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

constexpr const char* USAGE =
    "Usage: qorharbour [--frames N] [--time HOUR] [--screenshot FILE] [--run COMMAND]... "
    "[SCENE.xml]\n"
    "Watch the ships of a harbour. F1 opens the console; its command 'help' lists all commands.\n"
    "  --frames N         run N frames by a fixed step, without the user's files, and end\n"
    "  --time HOUR        begin at an hour of the day, from 0 to 24\n"
    "  --screenshot FILE  write the last frame to a TGA file and print its checksums\n"
    "  --run COMMAND      run a command of the console first\n"
    "  --help             print this text\n";

struct TArguments {
    bool isValid = true, wantsHelp = false;
    int frameCount = 0;
    float hour = -1.0f;
    std::string scene, screenshot;
    std::vector<std::string> commands;
};

/// Stores the value of an option.
/// @return whether the option exists and takes the value
bool readOption(TArguments& arguments, const std::string& name, const std::string& value)
{
    if (name == "--run") {
        arguments.commands.push_back(value);
    } else if (name == "--screenshot") {
        arguments.screenshot = value;
    } else if (name == "--frames") {
        arguments.frameCount = qor::StringUtil::stringToInt(value);
        return arguments.frameCount > 0;
    } else if (name == "--time") {
        arguments.hour = qor::StringUtil::stringToFloat(value);
        return value.find_first_not_of("0123456789.") == std::string::npos &&
               arguments.hour < 24.0f;
    }
    return name == "--run" || name == "--screenshot";
}

TArguments readArguments(const std::vector<std::string>& values)
{
    TArguments arguments;
    for (std::size_t i = 0; i < values.size() && arguments.isValid; ++i) {
        if (values[i] == "--help") {
            arguments.wantsHelp = true;
        } else if (values[i].rfind('-', 0) != 0 && arguments.scene.empty()) {
            arguments.scene = values[i];
        } else {
            ++i;
            arguments.isValid =
                i < values.size() && readOption(arguments, values[i - 1], values[i]);
        }
    }
    return arguments;
}

/// Loads the scene of the arguments or else the user's own. If that fails, or does not exist, the
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
    if (harbour.getScene().getShips().empty() && harbour.getFilename().empty()) {
        // A file that exists, but was not read, must not be overwritten.
        harbour.load(qor::File::filePath(QORHARBOUR_ART, "scene.xml"),
                     qor::File::fileExists(userFile) ? "" : userFile);
    }
}

int runHarbour(const TArguments& arguments)
{
    const bool isTest = arguments.frameCount > 0;
    Harbour harbour(QORHARBOUR_ART);
    const std::string userDirectory =
        isTest ? "" : qor::File::getUserDataDirectory("qorharbour", true);
    const std::string settingsFile = qor::File::filePath(userDirectory, "settings.xml");
    bool keepsSettings = false;
    if (!userDirectory.empty()) {
        qor::Log::open(qor::File::filePath(userDirectory, "qorharbour.log").c_str(), true);
        keepsSettings = harbour.settings.load(settingsFile) ||
                        harbour.fail("Cannot read the settings; they will not be saved");
    }
    // The rate would be in the picture, which must be the same each time.
    harbour.settings.setBoolean("show/rate", !isTest && harbour.settings.getBoolean("show/rate"));
    Window window(harbour);
    loadScene(harbour, arguments, userDirectory);
    if (isTest || arguments.hour >= 0.0f || !arguments.commands.empty()) {
        harbour.waitForScene();
    }
    harbour.hour = arguments.hour >= 0.0f ? arguments.hour : harbour.hour;
    for (const std::string& command : arguments.commands) {
        harbour.runLine(command);
        harbour.waitForScene();
    }
    window.run(arguments.frameCount);
    const bool isWritten =
        arguments.screenshot.empty() || harbour.takeScreenshot(arguments.screenshot);
    std::vector<std::string> lines;
    harbour.console.getOutput(lines, isTest ? harbour.console.getOutputLenght() : 0, 0);
    for (std::size_t i = lines.size(); i > 0; --i) {
        std::cout << lines[i - 1] << '\n';
    }
    harbour.waitForScene(); // XML is not saved during a load
    const bool isSaved = !keepsSettings || harbour.settings.save(settingsFile);
    return isWritten && isSaved ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

int main(int argumentCount, char** argumentValues)
try {
    constexpr int BAD_USAGE = 2;
    const TArguments arguments =
        readArguments({argumentValues + 1, argumentValues + argumentCount});
    if (!arguments.isValid || arguments.wantsHelp) {
        (arguments.isValid ? std::cout : std::cerr) << USAGE;
        return arguments.isValid ? EXIT_SUCCESS : BAD_USAGE;
    }
    return runHarbour(arguments);
} catch (const std::exception& exception) {
    std::cerr << "qorharbour: " << exception.what() << '\n';
    return EXIT_FAILURE;
}

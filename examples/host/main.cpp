// SPDX-License-Identifier: MIT
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>

#include "CheckCommands.h"
#include "DocumentCommands.h"
#include "GeneralCommands.h"
#include "Host.h"
#include "ImageCommands.h"
#include "LogCommands.h"
#include "Screen.h"
#include "Script.h"
#include "SettingsCommands.h"
#include "Terminal.h"
#include "shared/Text.h"

namespace
{

constexpr int USAGE_ERROR = 2;
constexpr const char* USAGE =
    "Usage: qorhost [--echo] [--log FILE] [--config FILE] [DOCUMENT.xml]\n"
    "Shows, changes and checks an XML document. On a terminal it takes the full screen;\n"
    "otherwise it runs the commands of standard input. 'help' lists the commands.\n"
    "  --echo         print each line of standard input before its answer\n"
    "  --log FILE     write the log to FILE instead of the user's data directory\n"
    "  --config FILE  keep the settings in FILE instead of the user's data directory\n"
    "  --help         print this text\n";

struct TArguments {
    bool isValid = true;
    bool isHelpRequested = false;
    bool echoes = false;
    std::string log;
    std::string config;
    std::string filename;
};

TArguments readArguments(int count, char** values)
{
    TArguments arguments;
    for (int i = 1; i < count; ++i) {
        const std::string value = values[i];
        if (value == "--help") {
            arguments.isHelpRequested = true;
        } else if (value == "--echo") {
            arguments.echoes = true;
        } else if (value == "--log" && i + 1 < count) {
            arguments.log = values[++i];
        } else if (value == "--config" && i + 1 < count) {
            arguments.config = values[++i];
        } else if (value.empty() || value.front() == '-' || !arguments.filename.empty()) {
            arguments.isValid = false;
        } else {
            arguments.filename = value;
        }
    }
    return arguments;
}

/// Loads the settings and the document, and prints the greeting.
/// @return false if the settings or the document could not be loaded
bool startSession(Host& host, const TArguments& arguments)
{
    const std::string error = host.getSettings().load(
        arguments.config.empty() ? Host::getUserFile("settings.xml") : arguments.config);
    const bool hasSettings = error.empty() || host.fail(error);
    const qor::Configuration& settings = host.getSettings().getTable();
    if (!settings.getString("greeting").empty()) {
        host.getConsole().print(settings.getString("greeting"));
    }
    std::string filename = arguments.filename;
    if (filename.empty() && settings.getBoolean("document/reopen")) {
        filename = settings.getString("document/recent");
    }
    return (filename.empty() || host.loadDocument(filename)) && hasSettings;
}

/// Saves the settings after an interactive session, because they contain the recent document.
/// @return the exit status
int saveSettings(Host& host)
{
    // While a document is being loaded, the last XML error belongs to the loader.
    const std::string error = host.isLoading() ? "" : host.getSettings().save();
    if (error.empty()) {
        return EXIT_SUCCESS;
    }
    std::cerr << "qorhost: " << toPrintable(error) << '\n';
    return EXIT_FAILURE;
}

Host::Mode chooseMode()
{
    if (!isInteractive()) {
        return Host::Mode::SCRIPT;
    }
    return hasScreen() ? Host::Mode::FULL_SCREEN : Host::Mode::LINE_BY_LINE;
}

int runHost(const TArguments& arguments)
{
    Host host(chooseMode());
    addDocumentCommands(host);
    addCheckCommands(host);
    addImageCommands(host);
    addSettingsCommands(host);
    addLogCommands(host, openLog(host, arguments.log));
    addGeneralCommands(host);

    const bool hasStarted = startSession(host, arguments);
    if (host.getMode() == Host::Mode::SCRIPT) {
        const bool hasSucceeded = runScript(host, std::cin, std::cout, arguments.echoes);
        return hasStarted && hasSucceeded ? EXIT_SUCCESS : EXIT_FAILURE;
    }
    bool hasSucceeded = true;
    if (host.getMode() == Host::Mode::LINE_BY_LINE) {
        catchInterrupts();
        hasSucceeded = runScript(host, std::cin, std::cout, arguments.echoes);
    } else if (!runScreen(host)) {
        std::cerr << "qorhost: Cannot use this terminal. Check the variable TERM\n";
        return EXIT_FAILURE;
    }
    const int status = saveSettings(host);
    return hasSucceeded ? status : EXIT_FAILURE;
}

} // namespace

int main(int argumentCount, char** argumentValues)
try {
    const TArguments arguments = readArguments(argumentCount, argumentValues);
    if (!arguments.isValid) {
        std::cerr << USAGE;
        return USAGE_ERROR;
    }
    if (arguments.isHelpRequested) {
        std::cout << USAGE;
        return EXIT_SUCCESS;
    }
    return runHost(arguments);
} catch (const std::exception& exception) {
    std::cerr << "qorhost: " << toPrintable(exception.what()) << '\n';
    return EXIT_FAILURE;
}

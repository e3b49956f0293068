#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>

#include <unistd.h>

#include "CheckCommands.h"
#include "DocumentCommands.h"
#include "GeneralCommands.h"
#include "Host.h"
#include "ImageCommands.h"
#include "LogCommands.h"
#include "Screen.h"
#include "Script.h"
#include "SettingsCommands.h"

namespace
{

constexpr int BAD_USAGE = 2;
constexpr const char* USAGE =
    "Usage: qorhost [--echo] [--log FILE] [--config FILE] [DOCUMENT.xml]\n"
    "Work on a document from a console: on a terminal a full screen, else the lines of\n"
    "standard input. The command 'help' lists all commands.\n"
    "  --echo         print each line of standard input before its answer\n"
    "  --log FILE     log into this file, and not into that in the user's data directory\n"
    "  --config FILE  keep the settings in this file, and not in the user's data directory\n"
    "  --help         print this text\n";

struct TArguments {
    bool isValid = true;
    bool wantsHelp = false;
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
            arguments.wantsHelp = true;
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

/// Loads the settings, greets the user, and loads the document that is to be worked on.
/// @return whether all went well
bool begin(Host& host, const TArguments& arguments)
{
    const bool hasSettings = host.loadSettings(
        arguments.config.empty() ? Host::getUserFile("settings.xml") : arguments.config);
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

int runHost(const TArguments& arguments)
{
    const bool usesScreen = hasScreen() && isatty(STDIN_FILENO) && isatty(STDOUT_FILENO);
    Host host(usesScreen ? Host::Mode::FULL_SCREEN : Host::Mode::SCRIPT);
    addGeneralCommands(host);
    addDocumentCommands(host);
    addSettingsCommands(host);
    addCheckCommands(host);
    addImageCommands(host);
    addLogCommands(host, openLog(host, arguments.log));

    const bool loaded = begin(host, arguments);
    if (!usesScreen) {
        const bool succeeded = runScript(host, std::cin, std::cout, arguments.echoes);
        return loaded && succeeded ? EXIT_SUCCESS : EXIT_FAILURE;
    }
    if (!runScreen(host)) {
        std::cerr << "qorhost: this terminal cannot be used; see the variable TERM\n";
        return EXIT_FAILURE;
    }
    // The recent document, say. While one is being loaded, the text of the last XML error is the
    // loader's.
    if (!host.isLoading()) {
        host.getSettings().save();
    }
    return EXIT_SUCCESS;
}

} // namespace

int main(int argumentCount, char** argumentValues)
try {
    const TArguments arguments = readArguments(argumentCount, argumentValues);
    if (!arguments.isValid) {
        std::cerr << USAGE;
        return BAD_USAGE;
    }
    if (arguments.wantsHelp) {
        std::cout << USAGE;
        return EXIT_SUCCESS;
    }
    return runHost(arguments);
} catch (const std::exception& exception) {
    std::cerr << "qorhost: " << exception.what() << '\n';
    return EXIT_FAILURE;
}

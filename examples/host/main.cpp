// SPDX-License-Identifier: MIT
#include <cstdlib>
#include <iostream>
#include <string>

#include "CheckCommands.h"
#include "DocumentCommands.h"
#include "GeneralCommands.h"
#include "Host.h"
#include "ImageCommands.h"
#include "Screen.h"
#include "Script.h"
#include "Terminal.h"
#include "shared/Program.h"
#include "shared/SessionCommands.h"
#include "shared/Text.h"

namespace
{

constexpr const char* USAGE =
    "Usage: qorhost [--echo] [--log FILE] [--config FILE] [DOCUMENT.xml]\n"
    "Shows, changes and checks an XML document. On a terminal it takes the full screen;\n"
    "otherwise it runs the commands of standard input. 'help' lists the commands.\n"
    "  --echo         print each line of standard input before its answer\n"
    "  --log FILE     write the log to FILE instead of the user's data directory\n"
    "  --config FILE  keep the settings in FILE instead of the user's data directory\n"
    "  --help         print this text\n";

/// Loads the settings and the document, and prints the greeting.
/// @return false if the settings or the document could not be loaded
bool startSession(Host& host, const Arguments& arguments)
{
    const bool hasSettings = loadSettings(host, arguments);
    const qor::Configuration& settings = host.getSettings().getTable();
    if (!settings.getString("greeting").empty()) {
        host.getConsole().print(settings.getString("greeting"));
    }
    std::string filename = arguments.getFile();
    if (filename.empty() && settings.getBoolean("document/reopen")) {
        filename = settings.getString("document/recent");
    }
    return (filename.empty() || host.loadDocument(filename)) && hasSettings;
}

Host::Mode chooseMode()
{
    if (!isInteractive()) {
        return Host::Mode::SCRIPT;
    }
    return hasScreen() ? Host::Mode::FULL_SCREEN : Host::Mode::LINE_BY_LINE;
}

int runHost(const Arguments& arguments)
{
    Host host(chooseMode());
    addDocumentCommands(host);
    addCheckCommands(host);
    addImageCommands(host);
    addSettingsCommands(host);
    addLogCommands(host, host.openLog(arguments.get("--log")));
    addGeneralCommands(host);

    const bool hasStarted = startSession(host, arguments);
    if (host.getMode() == Host::Mode::SCRIPT) {
        const bool hasSucceeded = runScript(host, std::cin, std::cout, arguments.has("--echo"));
        return hasStarted && hasSucceeded ? EXIT_SUCCESS : EXIT_FAILURE;
    }
    bool hasSucceeded = true;
    if (host.getMode() == Host::Mode::LINE_BY_LINE) {
        catchInterrupts();
        hasSucceeded = runScript(host, std::cin, std::cout, arguments.has("--echo"));
    } else if (!runScreen(host)) {
        std::cerr << "qorhost: Cannot use this terminal. Check the variable TERM\n";
        return EXIT_FAILURE;
    }
    // The settings of an interactive session contain the recent document.
    const int status = saveSettings(host);
    return hasSucceeded ? status : EXIT_FAILURE;
}

} // namespace

int main(int argumentCount, char** argumentValues)
{
    const TProgram program = {"qorhost", USAGE, {"--echo"}, {"--log", "--config"}, runHost};
    return runProgram(program, argumentCount, argumentValues);
}

// SPDX-License-Identifier: MIT
#include "GeneralCommands.h"

#include <string>

#include "Host.h"
#include "shared/SessionCommands.h"

void addGeneralCommands(Host& host)
{
    using TTokens = Command::TTokens;
    host.beginGroup("General");
    addHelpCommand(host, "Up and Down: history. Page Up and Page Down: scroll. Ctrl-A, E, K, U "
                         "and W: edit the line. Ctrl-C, Ctrl-D: quit.");
    host.addCommand({"state", "", "Show the state that handles typed lines", 0, 0},
                    [&host](const TTokens&) {
                        host.getConsole().print(host.getStates().getPath());
                        return true;
                    });
    addStatsCommand(host, host.getStats(), "Show the mean milliseconds of the commands");
    for (const std::string name : {"quit", "exit"}) {
        host.addCommand({name, "", "Quit, but ask first if there are unsaved changes", 0, 0},
                        [&host](const TTokens&) { return host.getStates().quit(); });
        host.addCommand({name + "!", "", "Quit and drop unsaved changes", 0, 0},
                        [&host](const TTokens&) { return host.getStates().quitNow(); });
    }
}

// SPDX-License-Identifier: MIT
#pragma once

#include <string>

class Host;

/// Opens the host's log and prints its file name, or a warning.
/// @param filename the log file; empty for the one in the user's data directory
/// @return the open file; empty if no file could be opened
std::string openLog(Host& host, const std::string& filename);

/// Adds the commands that write and show the log.
/// @param filename the log file; empty if there is none
void addLogCommands(Host& host, const std::string& filename);

#pragma once

#include <string>

class Host;

/// Opens the host's log, and prints where it is.
/// @param filename the log file; empty for that in the user's data directory
/// @return the file that is open; empty if none could be opened
std::string openLog(Host& host, const std::string& filename);

/// Adds the commands around the log.
/// @param filename the log file; empty if there is none
void addLogCommands(Host& host, const std::string& filename);

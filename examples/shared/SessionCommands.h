// SPDX-License-Identifier: MIT
#pragma once

#include <string>

class Arguments;
class Session;
class Stats;

/// Adds the command `help`.
/// @param keys describes the program's keys
void addHelpCommand(Session& session, const std::string& keys);

/// Adds the commands that show, change, save and load settings.
void addSettingsCommands(Session& session);

/// Adds the commands that write and show the log.
/// @param filename the log file; empty if there is none
void addLogCommands(Session& session, const std::string& filename);

/// Loads the settings.
/// @param arguments their option `--config` names the file instead of the user's data directory
/// @return false after an error was printed
bool loadSettings(Session& session, const Arguments& arguments);

/// Saves the settings at the end of a program.
/// @return the exit status; after a failure, the error was written to standard error
int saveSettings(Session& session);

/// Adds the command `stats`.
/// @param stats the times that it shows
/// @param help the help text of the command
void addStatsCommand(Session& session, const Stats& stats, const std::string& help);

/// Adds the commands `save` and `save!`.
void addSaveCommands(Session& session);

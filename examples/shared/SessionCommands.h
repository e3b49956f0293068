// SPDX-License-Identifier: MIT
#pragma once

#include <string>

class Session;

/// Adds the command `help`.
/// @param keys describes the program's keys
void addHelpCommand(Session& session, const std::string& keys);

/// Adds the commands that show, change, save and load settings.
void addSettingsCommands(Session& session);

/// Adds the commands that write and show the log.
/// @param filename the log file; empty if there is none
void addLogCommands(Session& session, const std::string& filename);

/// Adds the commands `save` and `save!`.
void addSaveCommands(Session& session);

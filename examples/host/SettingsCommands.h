// SPDX-License-Identifier: MIT
#pragma once

class Host;

/// Adds the commands that show, change, save and load the settings.
void addSettingsCommands(Host& host);

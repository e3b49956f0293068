// SPDX-License-Identifier: MIT
#pragma once

class Host;

/// Adds the commands that describe the host and leave it.
void addGeneralCommands(Host& host);

#pragma once

class Host;

/// Adds the commands that have to do with the host itself.
void addGeneralCommands(Host& host);

#pragma once

class Host;

/// Adds the commands that hold the document against a template, and that tell checksums.
void addCheckCommands(Host& host);

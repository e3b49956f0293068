#pragma once

class Host;

/// Adds the commands that load, show, change and save the document. Paths are those of
/// qor::XMLElement; `/` is the root itself.
void addDocumentCommands(Host& host);

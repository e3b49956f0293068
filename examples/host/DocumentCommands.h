// SPDX-License-Identifier: MIT
#pragma once

class Host;

/// Adds the commands that load, show, change and save the document. Paths are those of ElementPath.
void addDocumentCommands(Host& host);

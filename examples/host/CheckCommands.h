// SPDX-License-Identifier: MIT
#pragma once

class Host;

/// Adds the commands that validate the document and compute checksums.
void addCheckCommands(Host& host);

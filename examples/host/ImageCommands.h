// SPDX-License-Identifier: MIT
#pragma once

class Host;

/// Adds the commands that load, show, change and save images. Each image has a name and exists
/// until the end of the session.
void addImageCommands(Host& host);

#pragma once

class Host;

/// Adds the commands that load, show, change and save images. Images have names and live as long as
/// the session.
void addImageCommands(Host& host);

#pragma once

class Host;

/// @return whether this program was built with a screen
bool hasScreen();

/// Shows the host's console on the terminal until the user leaves. A signal that ends the program
/// does so from here, once the terminal is restored.
/// @return false if the terminal cannot be used
bool runScreen(Host& host);

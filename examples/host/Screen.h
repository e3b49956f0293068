// SPDX-License-Identifier: MIT
#pragma once

class Host;

/// Returns whether the terminal can show the full screen: it can move its cursor, and it is large
/// enough.
bool hasScreen();

/// Shows the host's console on the full screen until the user leaves. A signal that ends the
/// program restores the terminal first.
/// @return false if the terminal cannot be used
bool runScreen(Host& host);

#pragma once

#include <iosfwd>

class Host;

/// Feeds a text to the host's console, and writes what it answers, each line's answer at once.
/// @param echoes whether to write the command lines too
/// @return whether no line failed and all could be written
bool runScript(Host& host, std::istream& input, std::ostream& output, bool echoes);

#pragma once

#include <iosfwd>

class Host;

/// Runs the lines of a text, and writes the answer to each line at once. In the mode LINE_BY_LINE
/// it also prompts, and asks before the end of the input loses changes.
/// @param echoes whether to write the input lines, too
/// @return false if a line failed, the output could not be written, or a script left unsaved
/// changes
bool runScript(Host& host, std::istream& input, std::ostream& output, bool echoes);

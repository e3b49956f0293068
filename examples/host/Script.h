// SPDX-License-Identifier: MIT
#pragma once

#include <iosfwd>

class Host;

/// Runs the lines of a text, and writes the output of each line before it reads the next one. In
/// the mode LINE_BY_LINE it writes a prompt before each line, and if the input ends with unsaved
/// changes, it asks the user.
/// @param echoes whether to write the input lines, too
/// @return false if the output could not be written, the input ended with unsaved changes, or a
///         line of a script failed
bool runScript(Host& host, std::istream& input, std::ostream& output, bool echoes);

// SPDX-License-Identifier: MIT
#include "qor/ConsoleCommand.h"

namespace qor
{

// Defined here so that the virtual table is emitted once, in the library.
ConsoleCommand::~ConsoleCommand() = default;

} // namespace qor

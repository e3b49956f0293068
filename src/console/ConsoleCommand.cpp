#include "qor/ConsoleCommand.h"

namespace qor
{

// Out of line, so that the library is the one home of the class's virtual table.
ConsoleCommand::~ConsoleCommand() = default;

} // namespace qor

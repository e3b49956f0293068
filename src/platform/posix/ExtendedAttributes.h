#pragma once

namespace qor::platform
{

/// Makes the extended attributes of a new file, with its access control list, the same as those of
/// another file. Does nothing where the system has no extended attributes.
/// @return false if an attribute cannot be read or set
bool copyExtendedAttributes(int from, int to);

} // namespace qor::platform

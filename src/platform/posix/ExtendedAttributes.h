// SPDX-License-Identifier: MIT
#pragma once

namespace qor::platform
{

/// Copies all extended attributes of a file to a new file, including the access control list.
/// Removes all other attributes of the new file. Has no effect on systems without extended
/// attributes.
/// @param from descriptor of the file to copy from
/// @param to descriptor of the new file
/// @return false if an attribute cannot be read, set or removed
bool copyExtendedAttributes(int from, int to);

} // namespace qor::platform

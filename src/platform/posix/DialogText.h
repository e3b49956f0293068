// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace qor::platform
{

/// How a dialog program interprets a text in its arguments.
enum class TextFormat {
    PLAIN,     ///< not interpreted
    ESCAPED,   ///< a backslash begins an escape sequence such as "\n"
    RICH_TEXT, ///< as ESCAPED, and as Qt's rich text if the text contains "<" or "&"
};

/// Encodes a text as an argument, so that a dialog program shows the text unchanged. Bytes that are
/// not valid UTF-8 become replacement characters, because programs reject them. An argument of more
/// than about 64 KiB is truncated after a whole character and ends with an ellipsis, because
/// systems limit the length of an argument.
std::string makeDialogText(std::string_view text, TextFormat format);

} // namespace qor::platform

#pragma once

#include <string>
#include <string_view>

namespace qor::platform
{

/// How a dialog program reads a text in its arguments.
enum class TextFormat {
    PLAIN,     ///< as it is
    ESCAPED,   ///< with escape sequences such as "\n"
    RICH_TEXT, ///< as ESCAPED, and as Qt's rich text if it contains "<" or "&"
};

/// Makes an argument from which a dialog program shows the text unchanged. Bytes that are not valid
/// UTF-8 become replacement characters, because programs refuse them. The argument is cut at about
/// 64 KiB, after a whole character and with an ellipsis, because systems limit an argument's
/// length.
std::string makeDialogText(std::string_view text, TextFormat format);

} // namespace qor::platform

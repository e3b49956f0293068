// SPDX-License-Identifier: MIT
#include "platform/Platform.h"

#include <cstdlib>
#include <string>
#include <vector>

#include "platform/posix/DialogText.h"
#include "platform/posix/Process.h"

namespace qor::platform
{

namespace
{

using TArguments = std::vector<std::string>;

bool isSet(const char* variable)
{
    const char* const value = getEnvironmentVariable(variable);
    return value && *value != '\0';
}

/// Puts a blank before a leading sign, so that a program does not read the text as an option.
std::string withProtectedSign(const std::string& text)
{
    const bool hasSign = !text.empty() && (text.front() == '-' || text.front() == '+');
    return hasSign ? " " + text : text;
}

/// Returns the known dialog programs in the order of preference.
std::vector<Program> getDialogs(const char* text, const char* captionText)
{
    const std::string caption = makeDialogText(captionText, TextFormat::PLAIN);
    const std::string plain = makeDialogText(text, TextFormat::PLAIN);
    std::vector<Program> dialogs;
    dialogs.emplace_back(
        TArguments{"zenity", "--error", "--no-markup", "--title=" + caption, "--text=" + plain});
    dialogs.emplace_back(TArguments{"kdialog", "--title=" + caption,
                                    "--error=" + makeDialogText(text, TextFormat::RICH_TEXT)});
    dialogs.emplace_back(TArguments{"Xdialog", "--title", withProtectedSign(caption), "--msgbox",
                                    withProtectedSign(makeDialogText(text, TextFormat::ESCAPED)),
                                    "0", "0"});
    // By default, the exit status of xmessage for its first button is 101 instead of 0.
    dialogs.emplace_back(TArguments{"xmessage", "-center", "-buttons", "OK:0", "-title",
                                    withProtectedSign(caption), withProtectedSign(plain)});
    return dialogs;
}

/// Returns whether a status does not show if the user has seen the dialog. The exit status is 1 if
/// the dialog was closed without its button. For some programs, it is also 1 if there is no
/// display.
bool isUncertain(int status)
{
    return status == 1 || status == STATUS_UNKNOWN;
}

} // namespace

bool showErrorBox(const char* text, const char* caption)
{
    if (!isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY")) {
        return false;
    }
    for (const Program& dialog : getDialogs(text, caption)) {
        const int status = dialog.exists() ? runAndWait(dialog) : STATUS_FAILED;
        // The user must not see a second dialog with the same text.
        if (status == EXIT_SUCCESS || isUncertain(status)) {
            return status == EXIT_SUCCESS;
        }
    }
    return false;
}

void openAddress(const char* address)
{
    if (*address == '\0' || *address == '-') {
        return;
    }
    const TArguments openers[] = {{"xdg-open", address},
                                  {"gio", "open", address},
                                  {"kde-open5", address},
                                  {"kde-open", address}};
    for (const TArguments& arguments : openers) {
        const Program opener(arguments);
        if (opener.exists()) {
            spawnDetached(opener);
            return;
        }
    }
}

} // namespace qor::platform

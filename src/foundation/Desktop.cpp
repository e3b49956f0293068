// SPDX-License-Identifier: MIT
#include "qor/Desktop.h"

#include <cstdio>

#include "platform/Platform.h"

namespace qor
{

void showErrorPopUp(const char* text, const char* caption)
{
    const char* const shownText = text ? text : "";
    const char* const shownCaption = caption ? caption : "Error";
    if (!platform::showErrorBox(shownText, shownCaption)) {
        std::fprintf(stderr, "%s: %s\n", shownCaption, shownText);
    }
}

void launchWebBrowser(const char* address)
{
    if (address) {
        platform::openAddress(address);
    }
}

} // namespace qor

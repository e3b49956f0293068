#pragma once

/// @file
/// What a host asks of the desktop. Both functions throw nothing but `std::bad_alloc`.

#include "qor/Export.h"

namespace qor
{

/// Shows an error in a box of the desktop and waits until the user has closed it. Both texts appear
/// as they are, without markup. Where there is no desktop, or none of the dialog programs that are
/// known (zenity, kdialog, Xdialog, xmessage), they go to standard error.
///
/// To run such a program, the process forks; the host's signal handlers stay as they are.
/// @param text    null is an empty text
/// @param caption null is "Error"
QORTK_API void showErrorPopUp(const char* text, const char* caption);

/// Opens an address with the program that the desktop has for it (xdg-open, gio, kde-open), found
/// along PATH but never in the current folder. It does not wait for that program, and no failure is
/// reported. The program gets none of the host's open files.
/// @param address null, an empty one and one that begins with a dash do nothing
QORTK_API void launchWebBrowser(const char* address);

} // namespace qor

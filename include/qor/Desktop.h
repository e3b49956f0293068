// SPDX-License-Identifier: MIT
#pragma once

/// @file
/// Functions that use the user's desktop. Any thread may call them. Only `std::bad_alloc` is ever
/// thrown.

#include "qor/Export.h"

namespace qor
{

/// Shows an error dialog and waits until the user has closed it.
///
/// Without a desktop, the text is written to standard error. On POSIX systems, the dialog is shown
/// by one of the programs zenity, kdialog, Xdialog and xmessage, as a child process. The text is
/// also written to standard error if none of them reports that the user has seen the dialog. No
/// report arrives if the host ignores SIGCHLD or collects the exit status of every child process.
///
/// The dialog shows both texts as they are, without markup. In the dialog, bytes that are not valid
/// UTF-8 are replaced, and a text of more than 64 KiB is cut and ends with an ellipsis.
/// @param text    the message; null is an empty text
/// @param caption the title; null is the title "Error"
///
/// @code
/// qor::showErrorPopUp("Cannot open 'chart.tga': Permission denied", "Chart viewer");
/// @endcode
QORTK_API void showErrorPopUp(const char* text, const char* caption);

/// Opens an address in the user's preferred program, such as a web browser. Does not wait for that
/// program and does not report failures.
///
/// On POSIX systems the address is passed to the first of xdg-open, gio, kde-open5 and kde-open
/// that PATH contains. Relative directories in PATH are ignored. The program inherits no open
/// files. If the host is a set-user-ID program, the program runs with the user's own privileges.
/// @param address a URL, or the path of a file. Null, an empty text and a text that begins with a
///                dash are ignored.
/// @warning The desktop may run a program for an address. If the address comes from a document or
///          another untrusted source, check first that it begins with `https://` or `http://`.
///
/// @code
/// qor::launchWebBrowser("https://www.example.com/manual");
/// @endcode
QORTK_API void launchWebBrowser(const char* address);

} // namespace qor

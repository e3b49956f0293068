#pragma once

/// @file
/// Functions of the user's desktop. Any thread may call them. Only `std::bad_alloc` is ever thrown.

#include "qor/Export.h"

namespace qor
{

/// Shows an error dialog and waits until the user has closed it.
///
/// Without a desktop the text is written to standard error. On POSIX systems, that is also done if
/// none of the programs zenity, kdialog, Xdialog and xmessage can show the dialog. They run as
/// child processes: a host that ignores or collects the exit status of all child processes gets the
/// text on standard error, too.
///
/// The dialog shows both texts as they are, without markup. In the dialog, bytes that are not valid
/// UTF-8 are replaced, and a text of more than 64 KiB is cut and ends with an ellipsis.
/// @param text    the message; null for an empty text
/// @param caption the title; null for "Error"
///
/// @code
/// qor::showErrorPopUp("Cannot open 'chart.tga': Permission denied", "Chart viewer");
/// @endcode
QORTK_API void showErrorPopUp(const char* text, const char* caption);

/// Opens an address in the program that the desktop has for it, and does not wait for that program.
///
/// On POSIX systems the address is passed to the first of xdg-open, gio, kde-open5 and kde-open
/// that PATH contains. Relative directories in PATH are ignored. The program inherits no open file,
/// and no privileges that the host has beyond those of the user. Failures are not reported.
/// @param address a URL, or the path of a file. Nothing happens for null, an empty text and a text
///                that begins with a dash.
/// @warning The desktop may run a program for an address. If the address comes from a document or
///          another untrusted source, check first that it begins with `https://` or `http://`.
///
/// @code
/// qor::launchWebBrowser("https://www.example.com/manual");
/// @endcode
QORTK_API void launchWebBrowser(const char* address);

} // namespace qor
